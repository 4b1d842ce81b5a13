# Zint::Zint, the library that encodes barcodes.
find_path(Zint_INCLUDE_DIR zint.h)
find_library(Zint_LIBRARY zint)
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Zint REQUIRED_VARS Zint_LIBRARY Zint_INCLUDE_DIR)
mark_as_advanced(Zint_LIBRARY Zint_INCLUDE_DIR)
if(Zint_FOUND AND NOT TARGET Zint::Zint)
  add_library(Zint::Zint UNKNOWN IMPORTED)
  set_target_properties(Zint::Zint PROPERTIES IMPORTED_LOCATION "${Zint_LIBRARY}"
    INTERFACE_INCLUDE_DIRECTORIES "${Zint_INCLUDE_DIR}")
endif()
