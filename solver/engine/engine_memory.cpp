// OpenBLAS takes one buffer of a fixed size at its first call that works on a
// matrix, keeps it for all later ones, and repeats the request without end
// where it is refused. There is no call that asks for the buffer alone and none
// that tells its size, so the room is tried out first and the smallest of
// factorisations makes the library take it, before anything else can.
#include "solver/engine/engine_memory.h"

#include <csdp/declarations.h>
#include <sys/mman.h>

#include <array>
#include <new>

#include "solver/start/late_constructors.h"

namespace sdpsol {

void reserve_engine_memory() {
  construct_engine_library();
  // 128 MiB on x86-64, the most of all architectures, and something beside it.
  constexpr std::size_t kBuffer = std::size_t{160} << 20U;
  void* const room =
      ::mmap(nullptr, kBuffer, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (room == MAP_FAILED) throw std::bad_alloc();
  ::munmap(room, kBuffer);

  double one = 1;
  std::array<blockrec, 2> blocks{};  // the library counts from 1
  blocks[1].blockcategory = MATRIX;
  blocks[1].blocksize = 1;
  blocks[1].data.mat = &one;
  blockmatrix matrix{};
  matrix.nblocks = 1;
  matrix.blocks = blocks.data();
  chol(matrix);
}

}  // namespace sdpsol
