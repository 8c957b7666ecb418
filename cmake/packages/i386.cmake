# Read by cpack before it makes 32-bit packages on a 64-bit machine.
set(ENV{DEB_HOST_ARCH} i386)
