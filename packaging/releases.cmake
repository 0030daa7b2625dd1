# What CHANGELOG.md says of the releases, newest first: a heading is "## VERSION (DATE)" with a date
# such as 2026-03-31, or "## VERSION (unreleased)".

# pelora_read_releases(): sets PELORA_RELEASES to the list of "VERSION DATE". The day of an
# unreleased version is that of SOURCE_DATE_EPOCH, and without one today.
function(pelora_read_releases)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/CHANGELOG.md)
  string(TIMESTAMP today "%Y-%m-%d" UTC)
  file(STRINGS ${PROJECT_SOURCE_DIR}/CHANGELOG.md headings REGEX "^## ")
  set(releases)
  foreach(heading IN LISTS headings)
    if(NOT heading MATCHES "^## ([0-9]+[.][0-9]+[.][0-9]+) [(](unreleased|[0-9-]+)[)]$")
      message(FATAL_ERROR "CHANGELOG.md: \"${heading}\" is no \"## VERSION (DATE)\"")
    endif()
    set(date ${CMAKE_MATCH_2})
    if(date STREQUAL "unreleased")
      set(date ${today})
    endif()
    list(APPEND releases "${CMAKE_MATCH_1} ${date}")
  endforeach()
  list(GET releases 0 newest)
  if(NOT newest MATCHES "^${PROJECT_VERSION} ")
    message(FATAL_ERROR "CHANGELOG.md begins with ${newest}, and CMakeLists.txt says ${PROJECT_VERSION}")
  endif()
  set(PELORA_RELEASES "${releases}" PARENT_SCOPE)
endfunction()

# pelora_metainfo_releases(<variable>): the releases as AppStream's <release> elements.
function(pelora_metainfo_releases variable)
  set(lines)
  foreach(release IN LISTS PELORA_RELEASES)
    string(REPLACE " " ";" words ${release})
    list(GET words 0 version)
    list(GET words 1 date)
    string(APPEND lines "    <release version=\"${version}\" date=\"${date}\"/>\n")
  endforeach()
  string(STRIP "${lines}" lines)
  set(${variable} "${lines}" PARENT_SCOPE)
endfunction()

# pelora_debian_changelog(<variable>): the releases as Debian writes them. What is new stands in the
# package's NEWS, which is CHANGELOG.md.
function(pelora_debian_changelog variable)
  set(text)
  foreach(release IN LISTS PELORA_RELEASES)
    string(REPLACE " " ";" words ${release})
    list(GET words 0 version)
    list(GET words 1 date)
    execute_process(COMMAND date --utc --date=${date} "+%a, %d %b %Y 00:00:00 +0000"
      OUTPUT_VARIABLE day OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    string(APPEND text "pelora-utility (${version}) stable; urgency=medium\n\n"
      "  * Release ${version}; NEWS.gz tells what is new.\n\n"
      " -- ${PELORA_PUBLISHER} <${PELORA_MAINTAINER_MAIL}>  ${day}\n\n")
  endforeach()
  string(REGEX REPLACE "\n+$" "\n" text "${text}")
  set(${variable} "${text}" PARENT_SCOPE)
endfunction()
