# The CSDP library as target csdp::csdp: static archives all the way down for a
# static command, else the shared library.
#
# Loading the shared OpenBLAS costs more than two milliseconds at every start of
# a program that may need only one; the static serial archive costs nothing.
add_library(csdp_csdp INTERFACE)
add_library(csdp::csdp ALIAS csdp_csdp)
find_path(SDPSOL_CSDP_INCLUDE csdp/declarations.h REQUIRED)
target_include_directories(csdp_csdp SYSTEM INTERFACE "${SDPSOL_CSDP_INCLUDE}")
if(SDPSOL_STATIC)
  find_library(SDPSOL_CSDP_STATIC libsdp.a REQUIRED)
  find_library(SDPSOL_OPENBLAS_STATIC libopenblas.a REQUIRED
               PATH_SUFFIXES openblas-serial x86_64-linux-gnu/openblas-serial
                             aarch64-linux-gnu/openblas-serial)
  # OpenBLAS brings LAPACK, which is Fortran; what CSDP calls of it needs nothing
  # of the Fortran runtime.
  target_link_libraries(csdp_csdp INTERFACE
    "${SDPSOL_CSDP_STATIC}" "${SDPSOL_OPENBLAS_STATIC}" m)
else()
  find_library(SDPSOL_CSDP_SHARED libsdp.so REQUIRED)
  target_link_libraries(csdp_csdp INTERFACE "${SDPSOL_CSDP_SHARED}" m)
endif()
