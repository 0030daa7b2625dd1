# Shared build rules: one options target and a few small functions.

add_library(pelora_options INTERFACE)
target_compile_features(pelora_options INTERFACE cxx_std_20)
target_include_directories(pelora_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_definitions(pelora_options INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS QT_NO_FOREACH)
if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
  target_compile_options(pelora_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wold-style-cast -Woverloaded-virtual -Wnon-virtual-dtor
    # GCC 12 warns of an overlap in its own std::string concatenation when it optimizes, and of an
    # empty std::optional<QString> that nobody reads.
    "$<$<AND:$<CXX_COMPILER_ID:GNU>,$<NOT:$<CONFIG:Debug>>>:-Wno-restrict;-Wno-maybe-uninitialized>"
    $<$<BOOL:${PELORA_WERROR}>:-Werror>)
elseif(MSVC)
  target_compile_options(pelora_options INTERFACE /W4 /utf-8 $<$<BOOL:${PELORA_WERROR}>:/WX>)
endif()

set(CMAKE_CXX_EXTENSIONS OFF)
if(CMAKE_BUILD_TYPE STREQUAL "Debug" AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  find_program(PELORA_GOLD ld.gold) # links in less than half the time
  if(PELORA_GOLD)
    add_link_options(-fuse-ld=gold)
  endif()
endif()
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_AUTOMOC ON)
set(CMAKE_AUTORCC ON)
set(CMAKE_AUTOUIC ON)
set(CMAKE_AUTOUIC_SEARCH_PATHS ${PROJECT_SOURCE_DIR}/app/forms)

# pelora_program(<target> DESCRIPTION <text>): a program that users get. It knows its version as
# PELORA_VERSION, the one in the topmost CMakeLists.txt, and is installed. On Windows it carries icon,
# version and manifest; elsewhere nobody asks for the description.
function(pelora_program target)
  cmake_parse_arguments(PROGRAM "" "DESCRIPTION" "" ${ARGN})
  target_compile_definitions(${target} PRIVATE PELORA_VERSION="${PROJECT_VERSION}")
  if(WIN32)
    include(${PROJECT_SOURCE_DIR}/packaging/identity.cmake)
    foreach(kind IN ITEMS rc manifest)
      configure_file(${PROJECT_SOURCE_DIR}/packaging/windows/program.${kind}.in
                     ${CMAKE_CURRENT_BINARY_DIR}/${target}.${kind} @ONLY)
    endforeach()
    target_sources(${target} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
    install(TARGETS ${target} RUNTIME DESTINATION .) # beside the libraries, as is usual there
  else()
    install(TARGETS ${target} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  endif()
endfunction()

# pelora_form_users(<form> <source>...): the sources include the form's generated header. Without this
# they would be compiled anew only by the build after the one that finds the form changed.
function(pelora_form_users form)
  set_property(SOURCE ${ARGN} APPEND PROPERTY OBJECT_DEPENDS ${PROJECT_SOURCE_DIR}/app/forms/${form})
endfunction()

# pelora_room(<room> SOURCES <file>... LINK <target>...): the library of one room, pelora_<room>.
# A form among the sources is that of the room's sources whose names begin as its own.
function(pelora_room room)
  cmake_parse_arguments(ROOM "" "" "SOURCES;LINK" ${ARGN})
  add_library(pelora_${room} STATIC ${ROOM_SOURCES})
  foreach(form IN LISTS ROOM_SOURCES)
    if(form MATCHES "/([a-z_]+)[.]ui$")
      set(users ${ROOM_SOURCES})
      list(FILTER users INCLUDE REGEX "^${CMAKE_MATCH_1}.*[.]cpp$")
      cmake_path(GET form FILENAME form)
      pelora_form_users(${form} ${users})
    endif()
  endforeach()
  target_link_libraries(pelora_${room} PUBLIC pelora_options ${ROOM_LINK})
endfunction()

# pelora_test(<name> SOURCES <file>... LINK <target>... [LABELS <label>...]
#             [DISPLAY | PRIVATE_NETWORK] [SOLO] [UNIX <what it needs of it>]):
# one Qt Test program. It runs offscreen, or on a virtual X display with DISPLAY, alone with SOLO,
# in a network of its own with PRIVATE_NETWORK (skipped where there can be none, except in CI), and
# with a home folder of its own, so that no test touches the user's files or another test's.
# Elsewhere than on a Unix a test that needs one, a display or a network of its own is left out, which
# tests-left-out.txt in the build folder says with the reason.
function(pelora_test name)
  cmake_parse_arguments(TEST "DISPLAY;PRIVATE_NETWORK;SOLO" "UNIX" "SOURCES;LINK;LABELS;ENVIRONMENT" ${ARGN})
  if(NOT UNIX)
    if(TEST_DISPLAY)
      set(TEST_UNIX "an X display")
    elseif(TEST_PRIVATE_NETWORK)
      set(TEST_UNIX "a private network")
    endif()
    if(TEST_UNIX)
      file(APPEND ${PROJECT_BINARY_DIR}/tests-left-out.txt "${name}: needs ${TEST_UNIX}\n")
      return()
    endif()
  endif()
  add_executable(${name} ${TEST_SOURCES})
  target_link_libraries(${name} PRIVATE ${TEST_LINK} Qt6::Test)
  # A test includes what moc makes of it itself. This file is for headers, and empty without one for moc.
  set(for_moc "")
  foreach(header IN LISTS TEST_SOURCES)
    if(header MATCHES "[.]h$")
      file(STRINGS ${header} found LIMIT_COUNT 1 REGEX "Q_OBJECT|Q_GADGET|Q_NAMESPACE")
      list(APPEND for_moc ${found})
    endif()
  endforeach()
  if(NOT for_moc)
    set_source_files_properties(${CMAKE_CURRENT_BINARY_DIR}/${name}_autogen/mocs_compilation.cpp
      PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
  endif()
  set(home ${CMAKE_CURRENT_BINARY_DIR}/home/${name})
  file(MAKE_DIRECTORY ${home})
  file(CHMOD ${home} PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE) # what Qt wants of XDG_RUNTIME_DIR
  if(TEST_DISPLAY)
    add_test(NAME ${name} COMMAND ${PROJECT_SOURCE_DIR}/scripts/with-display $<TARGET_FILE:${name}>)
    set(platform xcb)
  elseif(TEST_PRIVATE_NETWORK)
    add_test(NAME ${name}
      COMMAND ${PROJECT_SOURCE_DIR}/tests/in_private_network $<TARGET_FILE:${name}>)
    set(platform offscreen)
  else()
    add_test(NAME ${name} COMMAND ${name})
    set(platform offscreen)
  endif()
  set(longest 300) # seconds
  if(WIN32)
    set(longest 1200) # Wine takes its time over dialogs
  endif()
  set_tests_properties(${name} PROPERTIES
    TIMEOUT ${longest}
    RUN_SERIAL ${TEST_SOLO}
    LABELS "${TEST_LABELS}"
    SKIP_RETURN_CODE 77
    ENVIRONMENT "QT_QPA_PLATFORM=${platform};HOME=${home};XDG_CONFIG_HOME=${home}/.config;XDG_RUNTIME_DIR=${home};QT_LOGGING_RULES=qt.qpa.*=false;${TEST_ENVIRONMENT}")
endfunction()
