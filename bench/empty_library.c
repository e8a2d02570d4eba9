/* The least that a library can be: what loading any library costs. */
int empty_library(void);

int empty_library(void) {
  return 0;
}
