# Installs the CMake package VelmoraWidget: the exported targets Velmora::Basic, ::Util,
# ::Study, ::Graphic and ::Widget, a config that finds what they link to, its version
# file, and FindQwt.cmake for the Qwt dependency.
include(CMakePackageConfigHelpers)

set(VELMORA_PACKAGE_INSTALL_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/VelmoraWidget)

# Coin and Qwt have their find_dependency() in the config only when an installed library
# links to them publicly; a consumer of the others need not have them.
set(velmora_package_links "")
foreach(target IN ITEMS velmora_basic velmora_util velmora_study velmora_graphic velmora_widget)
  if(TARGET ${target})
    get_target_property(links ${target} INTERFACE_LINK_LIBRARIES)
    if(links)
      list(APPEND velmora_package_links ${links})
    endif()
  endif()
endforeach()
set(VELMORA_PACKAGE_NEEDS_COIN OFF)
set(VELMORA_PACKAGE_NEEDS_QWT OFF)
if(velmora_package_links MATCHES "Coin::")
  set(VELMORA_PACKAGE_NEEDS_COIN ON)
endif()
if(velmora_package_links MATCHES "Qwt::")
  set(VELMORA_PACKAGE_NEEDS_QWT ON)
endif()

install(EXPORT VelmoraWidgetTargets
  NAMESPACE Velmora::
  FILE VelmoraWidgetTargets.cmake
  DESTINATION ${VELMORA_PACKAGE_INSTALL_DIR})

configure_package_config_file(
  ${CMAKE_CURRENT_LIST_DIR}/VelmoraWidgetConfig.cmake.in
  ${CMAKE_BINARY_DIR}/package/VelmoraWidgetConfig.cmake
  INSTALL_DESTINATION ${VELMORA_PACKAGE_INSTALL_DIR})
write_basic_package_version_file(
  ${CMAKE_BINARY_DIR}/package/VelmoraWidgetConfigVersion.cmake
  VERSION ${PROJECT_VERSION}
  COMPATIBILITY SameMajorVersion)

install(FILES
  ${CMAKE_BINARY_DIR}/package/VelmoraWidgetConfig.cmake
  ${CMAKE_BINARY_DIR}/package/VelmoraWidgetConfigVersion.cmake
  ${CMAKE_CURRENT_LIST_DIR}/FindQwt.cmake
  DESTINATION ${VELMORA_PACKAGE_INSTALL_DIR})
