# The layering rule, checked on every build: the module reaches only the host;
# the host and the simulator never reach the module; nothing but the demo and
# the tests reach the simulator.
#
# Include directories already keep the layers apart (the host's targets cannot
# even find a module header); this check also catches relative includes.

set(TALVEX_BOUNDARY_SCRIPT ${CMAKE_CURRENT_LIST_DIR}/check_boundary.cmake)

function(talvex_check_boundary target layer)
  get_target_property(_sources ${target} SOURCES)
  get_target_property(_dir ${target} SOURCE_DIR)
  set(_files "")
  foreach(_s IN LISTS _sources)
    if(_s MATCHES "\\.(h|cpp)$")
      if(NOT IS_ABSOLUTE "${_s}")
        set(_s "${_dir}/${_s}")
      endif()
      list(APPEND _files "${_s}")
      string(REGEX REPLACE "\\.cpp$" ".h" _h "${_s}")
      if(EXISTS "${_h}" AND NOT _h STREQUAL _s)
        list(APPEND _files "${_h}")
      endif()
    endif()
  endforeach()
  list(REMOVE_DUPLICATES _files)
  set(_stamp ${CMAKE_CURRENT_BINARY_DIR}/${target}.boundary.stamp)
  string(REPLACE ";" "|" _joined "${_files}")
  add_custom_command(
    OUTPUT ${_stamp}
    COMMAND ${CMAKE_COMMAND} -DLAYER=${layer} "-DFILES=${_joined}" -DSTAMP=${_stamp}
            -P ${TALVEX_BOUNDARY_SCRIPT}
    DEPENDS ${_files} ${TALVEX_BOUNDARY_SCRIPT}
    COMMENT "Checking the layer boundary of ${target}"
    VERBATIM)
  add_custom_target(${target}_boundary DEPENDS ${_stamp})
  add_dependencies(${target} ${target}_boundary)
endfunction()
