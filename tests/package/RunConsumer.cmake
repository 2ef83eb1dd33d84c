# Run by the package.consumer test (cmake -P): install the build tree into a fresh prefix,
# build the consumer project against that prefix alone, and run it.
cmake_minimum_required(VERSION 3.16)

foreach(var IN ITEMS VELMORA_BUILD_DIR VELMORA_PREFIX VELMORA_LIBDIR CONSUMER_SOURCE_DIR
                     CONSUMER_BINARY_DIR CONSUMER_GENERATOR CONSUMER_CXX_COMPILER)
  if(NOT DEFINED ${var} OR "${${var}}" STREQUAL "")
    message(FATAL_ERROR "RunConsumer.cmake: ${var} is not set")
  endif()
endforeach()

# run(<step> <command>...): runs the command, shows it and fails the test on a non-zero exit.
function(run step)
  string(REPLACE ";" " " shown "${ARGN}")
  message(STATUS "${step}: ${shown}")
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "${step} failed (${result})")
  endif()
endfunction()

set(config_args)
if(CONSUMER_CONFIG)
  set(config_args --config ${CONSUMER_CONFIG})
endif()

# Start clean, so that a file the build no longer installs cannot make the test pass.
file(REMOVE_RECURSE "${VELMORA_PREFIX}" "${CONSUMER_BINARY_DIR}")
unset(ENV{DESTDIR})
run(install ${CMAKE_COMMAND} --install "${VELMORA_BUILD_DIR}" --prefix "${VELMORA_PREFIX}" ${config_args})

# Only public headers are installed, and none of them includes an internal one.
string(REPLACE "," ";" internal "${VELMORA_INTERNAL_HEADERS}")
file(GLOB installed RELATIVE "${VELMORA_PREFIX}/include/velmora" "${VELMORA_PREFIX}/include/velmora/*.h")
if(NOT installed)
  message(FATAL_ERROR "no header was installed in ${VELMORA_PREFIX}/include/velmora")
endif()
foreach(header IN LISTS installed)
  if(header IN_LIST internal OR header MATCHES "_p\\.h$")
    message(FATAL_ERROR "the internal header ${header} was installed")
  endif()
  file(STRINGS "${VELMORA_PREFIX}/include/velmora/${header}" includes REGEX "^[ \t]*#[ \t]*include")
  foreach(include IN LISTS includes)
    string(REGEX REPLACE "^[^<\"]*[<\"]([^>\"]+)[>\"].*$" "\\1" included "${include}")
    if(included IN_LIST internal OR included MATCHES "_p\\.h$")
      message(FATAL_ERROR "the installed header ${header} includes the internal header ${included}")
    endif()
  endforeach()
endforeach()

set(configure_args
  -S "${CONSUMER_SOURCE_DIR}" -B "${CONSUMER_BINARY_DIR}"
  -G "${CONSUMER_GENERATOR}"
  "-DCMAKE_CXX_COMPILER=${CONSUMER_CXX_COMPILER}"
  "-DCMAKE_PREFIX_PATH=${VELMORA_PREFIX}"
  -DCMAKE_FIND_PACKAGE_NO_PACKAGE_REGISTRY=ON)
if(CONSUMER_MAKE_PROGRAM)
  list(APPEND configure_args "-DCMAKE_MAKE_PROGRAM=${CONSUMER_MAKE_PROGRAM}")
endif()
if(CONSUMER_COMPILER_LAUNCHER)
  list(APPEND configure_args "-DCMAKE_CXX_COMPILER_LAUNCHER=${CONSUMER_COMPILER_LAUNCHER}")
endif()
if(CONSUMER_CONFIG)
  list(APPEND configure_args "-DCMAKE_BUILD_TYPE=${CONSUMER_CONFIG}")
endif()
# Sanitized libraries need a sanitized program: the runtime must be loaded first.
set(cxx_flags "${CONSUMER_CXX_FLAGS}")
if(CONSUMER_SANITIZE)
  string(APPEND cxx_flags " -fsanitize=address,undefined -fno-omit-frame-pointer")
  list(APPEND configure_args "-DCMAKE_EXE_LINKER_FLAGS=-fsanitize=address,undefined")
endif()
string(STRIP "${cxx_flags}" cxx_flags)
if(cxx_flags)
  list(APPEND configure_args "-DCMAKE_CXX_FLAGS=${cxx_flags}")
endif()
run(configure ${CMAKE_COMMAND} ${configure_args})

# The package must come from the prefix, not from the build tree or the system.
file(STRINGS "${CONSUMER_BINARY_DIR}/CMakeCache.txt" found_dir REGEX "^VelmoraWidget_DIR:")
string(REGEX REPLACE "^[^=]*=" "" found_dir "${found_dir}")
get_filename_component(real_prefix "${VELMORA_PREFIX}" REALPATH)
get_filename_component(real_found_dir "${found_dir}" REALPATH)
string(FIND "${real_found_dir}/" "${real_prefix}/" at)
if(NOT at EQUAL 0)
  message(FATAL_ERROR "VelmoraWidget was found in ${found_dir}, not in ${VELMORA_PREFIX}")
endif()

run(build ${CMAKE_COMMAND} --build "${CONSUMER_BINARY_DIR}" ${config_args})

if(IS_ABSOLUTE "${VELMORA_LIBDIR}")
  set(libdir "${VELMORA_LIBDIR}")
else()
  set(libdir "${VELMORA_PREFIX}/${VELMORA_LIBDIR}")
endif()
set(library_path "${libdir}")
if(DEFINED ENV{LD_LIBRARY_PATH} AND NOT "$ENV{LD_LIBRARY_PATH}" STREQUAL "")
  string(APPEND library_path ":$ENV{LD_LIBRARY_PATH}")
endif()
set(program "${CONSUMER_BINARY_DIR}/velmora_consumer")
if(CONSUMER_CONFIG AND NOT EXISTS "${program}")
  set(program "${CONSUMER_BINARY_DIR}/${CONSUMER_CONFIG}/velmora_consumer")
endif()
run(run ${CMAKE_COMMAND} -E env "LD_LIBRARY_PATH=${library_path}" QT_QPA_PLATFORM=offscreen "${program}")
