# Every library that the project builds on, as Debian packages it (see scripts/install-dependencies.sh).
find_package(Qt6 REQUIRED COMPONENTS Core)
find_package(pugixml REQUIRED)
find_package(PkgConfig REQUIRED)
find_package(Boost REQUIRED)
pkg_check_modules(Hwy REQUIRED IMPORTED_TARGET libhwy)
pkg_check_modules(Hdf5 REQUIRED IMPORTED_TARGET hdf5-serial)
pkg_check_modules(Isal REQUIRED IMPORTED_TARGET libisal)
pkg_check_modules(Png REQUIRED IMPORTED_TARGET libpng)
pkg_check_modules(Tiff REQUIRED IMPORTED_TARGET libtiff-4)

# hdf5-serial.pc names the C library alone; the dimension scales (H5DS) live in the high-level library beside it.
find_library(DATAOBJECTS_HDF5_HL hdf5_serial_hl REQUIRED)

if(DATAOBJECTS_BUILD_TOOLS)
    find_package(Qt6 REQUIRED COMPONENTS Gui)
    pkg_check_modules(Cli11 REQUIRED IMPORTED_TARGET CLI11)
endif()
if(DATAOBJECTS_BUILD_TESTS)
    find_package(GTest REQUIRED)
    # The system's own Python has the packages that Debian installs; another one in the path has not.
    set(Python3_EXECUTABLE /usr/bin/python3 CACHE FILEPATH "Python with h5py, xarray, h5netcdf and netCDF4")
    find_package(Python3 REQUIRED COMPONENTS Interpreter)
endif()
if(DATAOBJECTS_BUILD_BENCHMARKS)
    find_package(benchmark REQUIRED)
    find_path(DATAOBJECTS_OPENCV_INCLUDE opencv2/core.hpp PATH_SUFFIXES opencv4 REQUIRED)
    find_library(DATAOBJECTS_OPENCV_CORE opencv_core REQUIRED)
endif()
