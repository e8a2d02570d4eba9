// What a process has run is written down by exit(), which a forked child may not call
// here: its _exit() does it instead. The linker sends all calls of _exit to this one.
extern void __gcov_dump(void);
extern _Noreturn void __real__exit(int status);
_Noreturn void __wrap__exit(int status);

_Noreturn void __wrap__exit(int status) {
  __gcov_dump();
  __real__exit(status);
}
