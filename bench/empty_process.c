/* The least that a program can be: what starting any program costs. */
int main(void) {
  return 0;
}
