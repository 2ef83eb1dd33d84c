# velmora_add_library(NAME target ALIAS Name DIRS dir... LIBS lib... [QRC file...])
# Builds one of the shared libraries: every source of the listed folders, an export
# header <target>_export.h, bare-name includes from each folder, and install rules.
function(velmora_add_library)
  cmake_parse_arguments(V "" "NAME;ALIAS" "DIRS;LIBS;PRIVATE_LIBS;QRC" ${ARGN})
  set(sources)
  set(headers)
  foreach(dir IN LISTS V_DIRS)
    file(GLOB dir_sources CONFIGURE_DEPENDS ${dir}/*.cpp)
    file(GLOB dir_headers CONFIGURE_DEPENDS ${dir}/*.h)
    list(APPEND sources ${dir_sources})
    list(APPEND headers ${dir_headers})
  endforeach()
  add_library(${V_NAME} SHARED ${sources} ${headers} ${V_QRC})
  add_library(Velmora::${V_ALIAS} ALIAS ${V_NAME})
  set_target_properties(${V_NAME} PROPERTIES
    EXPORT_NAME ${V_ALIAS}
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR})
  string(TOUPPER ${V_NAME} upper)
  generate_export_header(${V_NAME}
    EXPORT_MACRO_NAME ${upper}_EXPORT
    EXPORT_FILE_NAME ${CMAKE_CURRENT_BINARY_DIR}/include/${V_NAME}_export.h)
  foreach(dir IN LISTS V_DIRS)
    target_include_directories(${V_NAME} PUBLIC $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}/${dir}>)
  endforeach()
  target_include_directories(${V_NAME} PUBLIC
    $<BUILD_INTERFACE:${CMAKE_CURRENT_BINARY_DIR}/include>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/velmora>)
  target_link_libraries(${V_NAME} PUBLIC ${V_LIBS} PRIVATE ${V_PRIVATE_LIBS})
  target_precompile_headers(${V_NAME} PRIVATE <QtCore> <QString> <QMap>)
  install(TARGETS ${V_NAME} EXPORT VelmoraWidgetTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  install(FILES ${headers} ${CMAKE_CURRENT_BINARY_DIR}/include/${V_NAME}_export.h
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/velmora)
endfunction()
