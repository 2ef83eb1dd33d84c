# velmora_add_library(NAME target ALIAS Name DIRS dir... LIBS lib... [QRC file...]
#                     [INTERNAL_HEADERS dir/file.h...])
# Builds one of the shared libraries: every source of the listed folders, an export
# header <target>_export.h, bare-name includes from each folder, and install rules.
# Only the public headers are installed: not the *_p.h files nor the INTERNAL_HEADERS,
# which no public header may include (the package test checks both). Their names are
# collected in the global property VELMORA_INTERNAL_HEADERS.
function(velmora_add_library)
  cmake_parse_arguments(V "" "NAME;ALIAS" "DIRS;LIBS;PRIVATE_LIBS;QRC;INTERNAL_HEADERS" ${ARGN})
  set(sources)
  set(headers)
  set(public_headers)
  foreach(dir IN LISTS V_DIRS)
    file(GLOB dir_sources CONFIGURE_DEPENDS ${dir}/*.cpp)
    file(GLOB dir_headers CONFIGURE_DEPENDS ${dir}/*.h)
    list(APPEND sources ${dir_sources})
    list(APPEND headers ${dir_headers})
  endforeach()
  set(internal)
  foreach(header IN LISTS V_INTERNAL_HEADERS)
    if(NOT EXISTS ${CMAKE_CURRENT_SOURCE_DIR}/${header})
      message(FATAL_ERROR "velmora_add_library(${V_NAME}): no internal header ${header}")
    endif()
    list(APPEND internal ${CMAKE_CURRENT_SOURCE_DIR}/${header})
  endforeach()
  foreach(header IN LISTS headers)
    get_filename_component(header_name ${header} NAME)
    if(header IN_LIST internal OR header_name MATCHES "_p\\.h$")
      set_property(GLOBAL APPEND PROPERTY VELMORA_INTERNAL_HEADERS ${header_name})
    else()
      list(APPEND public_headers ${header})
    endif()
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
  install(FILES ${public_headers} ${CMAKE_CURRENT_BINARY_DIR}/include/${V_NAME}_export.h
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/velmora)
endfunction()
