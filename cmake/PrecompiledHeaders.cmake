# Qt's and the standard library's headers, compiled once for a whole build: it spares a good part of
# its time and hides an include that is missing, so what users get is built without.

# pelora_headers_for(<result> <library>...): Widgets or Core, whichever of Qt the libraries lead to, or
# nothing where there is no Qt.
function(pelora_headers_for result)
  set(kind "")
  foreach(library IN LISTS ARGN)
    set(found "")
    if(library STREQUAL "Qt6::Widgets")
      set(found Widgets)
    elseif(library MATCHES "^Qt6::")
      set(found Core)
    elseif(library MATCHES "^pelora_" AND TARGET ${library})
      get_target_property(further ${library} INTERFACE_LINK_LIBRARIES)
      pelora_headers_for(found ${further})
    endif()
    if(found AND NOT kind STREQUAL "Widgets")
      set(kind ${found})
    endif()
  endforeach()
  set(${result} "${kind}" PARENT_SCOPE)
endfunction()

# pelora_use_precompiled_headers(<folder>): all programs and libraries that are defined there and below.
function(pelora_use_precompiled_headers folder)
  get_property(targets DIRECTORY ${folder} PROPERTY BUILDSYSTEM_TARGETS)
  foreach(target IN LISTS targets)
    get_target_property(type ${target} TYPE)
    get_target_property(libraries ${target} LINK_LIBRARIES)
    if(type MATCHES "EXECUTABLE|STATIC_LIBRARY")
      pelora_headers_for(kind ${libraries})
      if(kind)
        target_precompile_headers(${target} REUSE_FROM pelora_headers_${kind})
      endif()
    endif()
  endforeach()
  get_property(folders DIRECTORY ${folder} PROPERTY SUBDIRECTORIES)
  foreach(further IN LISTS folders)
    pelora_use_precompiled_headers(${further})
  endforeach()
endfunction()

foreach(kind IN ITEMS Core Widgets)
  file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/headers/${kind}.cpp CONTENT "")
  add_library(pelora_headers_${kind} OBJECT ${PROJECT_BINARY_DIR}/headers/${kind}.cpp)
  target_link_libraries(pelora_headers_${kind} PRIVATE pelora_options Qt6::${kind})
  target_precompile_headers(pelora_headers_${kind} PRIVATE
    <algorithm> <array> <chrono> <functional> <memory> <optional> <stdexcept> <string> <variant> <vector>
    <Qt${kind}>)
  set_target_properties(pelora_headers_${kind} PROPERTIES AUTOMOC OFF AUTOUIC OFF AUTORCC OFF)
endforeach()
pelora_use_precompiled_headers(${PROJECT_SOURCE_DIR})
