# Compiler settings of the whole project and the functions that make a room, a test and a program.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)

# -g1 keeps function names and lines for call stacks at a fraction of the build time of full debug information.
set(CMAKE_CXX_FLAGS_RELWITHDEBINFO "-O2 -g1")
set(CMAKE_C_FLAGS_RELWITHDEBINFO "-O2 -g1")

add_library(kelvane_flags INTERFACE)
target_compile_options(kelvane_flags INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor
  -Woverloaded-virtual -Wimplicit-fallthrough -Werror -fno-omit-frame-pointer)
target_compile_definitions(kelvane_flags INTERFACE _GLIBCXX_ASSERTIONS)
target_include_directories(kelvane_flags INTERFACE ${PROJECT_SOURCE_DIR}/src)
if(KELVANE_SANITIZE)
  target_compile_options(kelvane_flags INTERFACE -fsanitize=${KELVANE_SANITIZE} -fno-sanitize-recover=all)
  target_link_options(kelvane_flags INTERFACE -fsanitize=${KELVANE_SANITIZE})
  if(KELVANE_SANITIZE MATCHES undefined)
    # Debian's glslang is built without run-time type information.
    target_compile_options(kelvane_flags INTERFACE -fno-sanitize=vptr)
  endif()
  # As an object, because the sanitizer's library has a symbol of that name as well, and comes first.
  add_library(kelvane_keep_libraries OBJECT ${PROJECT_SOURCE_DIR}/tests/support/keep_libraries.cpp)
  target_sources(kelvane_flags INTERFACE $<TARGET_OBJECTS:kelvane_keep_libraries>)
endif()

find_package(Threads REQUIRED)
find_package(PkgConfig REQUIRED)

# kelvane_room(NAME [FROM folder...] [USES library...])
# A room is a static library of every .cpp of its folders (default: the current one). What it may use is what it links.
function(kelvane_room name)
  cmake_parse_arguments(ROOM "" "" "FROM;USES" ${ARGN})
  if(NOT ROOM_FROM)
    set(ROOM_FROM .)
  endif()
  set(sources "")
  foreach(folder ${ROOM_FROM})
    file(GLOB found CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*.cpp)
    list(APPEND sources ${found})
  endforeach()
  if(sources)
    add_library(${name} STATIC ${sources})
    target_link_libraries(${name} PUBLIC kelvane_flags ${ROOM_USES})
  else()
    add_library(${name} INTERFACE)
    target_link_libraries(${name} INTERFACE kelvane_flags ${ROOM_USES})
  endif()
endfunction()

# kelvane_test(NAME SOURCES file... USES library... [LABELS label...] [SCREEN])
# One test program; each runs in a folder of its own below build/<preset>/test-run. SCREEN marks one that needs a display.
# The thread sanitizer's build leaves out all but the tests labelled "threads"; the end-to-end tests are in all of them. The
# target all_tests builds what there is.
add_custom_target(all_tests)
function(kelvane_test name)
  cmake_parse_arguments(TEST "SCREEN" "" "SOURCES;USES;LABELS" ${ARGN})
  if(KELVANE_SANITIZE MATCHES thread AND NOT "threads" IN_LIST TEST_LABELS)
    return()
  endif()
  add_executable(${name} ${TEST_SOURCES})
  add_dependencies(all_tests ${name})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(${name} PRIVATE kelvane_flags ${TEST_USES} kelvane_test_support)
  set(folder ${CMAKE_BINARY_DIR}/test-run/${name})
  file(MAKE_DIRECTORY ${folder})
  add_test(NAME ${name} COMMAND ${name} WORKING_DIRECTORY ${folder})
  set(labels ${TEST_LABELS})
  if(TEST_SCREEN)
    list(APPEND labels screen)
  endif()
  set_tests_properties(${name} PROPERTIES TIMEOUT 300 LABELS "${labels}")
  # llvmpipe on the calling thread alone gives the same pixels every time.
  set_property(TEST ${name} PROPERTY ENVIRONMENT "LP_NUM_THREADS=0;KELVANE_SOURCE_DIR=${PROJECT_SOURCE_DIR}"
    "LSAN_OPTIONS=print_suppressions=0:suppressions=${PROJECT_SOURCE_DIR}/tests/support/leaks.supp")
endfunction()
