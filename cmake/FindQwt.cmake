# FindQwt
# -------
# Finds Qwt 6 built for Qt 5. Qwt ships no CMake package; Debian's libqwt-qt5-dev has the
# pkg-config module Qt5Qwt6, used here for hints and the version. Without pkg-config the
# usual include and library folders are searched.
#
# Imported target:
#   Qwt::Qwt           the library, its include folder and the Qt modules it needs
# Result variables:
#   Qwt_FOUND, Qwt_VERSION, Qwt_INCLUDE_DIR, Qwt_LIBRARY

find_package(PkgConfig QUIET)
if(PKG_CONFIG_FOUND)
  pkg_check_modules(PC_Qwt QUIET Qt5Qwt6)
endif()

find_path(Qwt_INCLUDE_DIR
  NAMES qwt_global.h
  HINTS ${PC_Qwt_INCLUDEDIR} ${PC_Qwt_INCLUDE_DIRS}
  PATH_SUFFIXES qwt qwt-qt5 qt5/qwt)
find_library(Qwt_LIBRARY
  NAMES qwt-qt5 qwt
  HINTS ${PC_Qwt_LIBDIR} ${PC_Qwt_LIBRARY_DIRS})

if(PC_Qwt_VERSION)
  set(Qwt_VERSION ${PC_Qwt_VERSION})
elseif(Qwt_INCLUDE_DIR AND EXISTS "${Qwt_INCLUDE_DIR}/qwt_global.h")
  file(STRINGS "${Qwt_INCLUDE_DIR}/qwt_global.h" _qwt_version_line
    REGEX "^#define[ \t]+QWT_VERSION_STR[ \t]+\"[0-9.]+\"")
  string(REGEX REPLACE ".*\"([0-9.]+)\".*" "\\1" Qwt_VERSION "${_qwt_version_line}")
  unset(_qwt_version_line)
endif()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Qwt
  REQUIRED_VARS Qwt_LIBRARY Qwt_INCLUDE_DIR
  VERSION_VAR Qwt_VERSION)
mark_as_advanced(Qwt_INCLUDE_DIR Qwt_LIBRARY)

if(Qwt_FOUND AND NOT TARGET Qwt::Qwt)
  # Qwt's headers include these Qt modules.
  find_package(Qt5 QUIET REQUIRED COMPONENTS Widgets PrintSupport Svg OpenGL)
  add_library(Qwt::Qwt UNKNOWN IMPORTED)
  set_target_properties(Qwt::Qwt PROPERTIES
    IMPORTED_LOCATION "${Qwt_LIBRARY}"
    INTERFACE_INCLUDE_DIRECTORIES "${Qwt_INCLUDE_DIR}"
    INTERFACE_LINK_LIBRARIES "Qt5::Widgets;Qt5::PrintSupport;Qt5::Svg;Qt5::OpenGL")
endif()
