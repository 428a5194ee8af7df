# Resource-only modules, built for both hosts from one .rc: a DLL without code on Windows, the compiled .res under the DLL's name
# elsewhere (the platform layer loads that).
find_program(VELMORA_WINDRES NAMES x86_64-w64-mingw32-windres REQUIRED)

# Scripts are preprocessed for the host's own headers: the SDK's by the cross compiler, the layer's by this host's compiler.
if(WIN32)
  set(VELMORA_RC_PREPROCESSOR)
else()
  set(VELMORA_RC_PREPROCESSOR
    --preprocessor=${CMAKE_CXX_COMPILER} --preprocessor-arg=-E --preprocessor-arg=-xc --preprocessor-arg=-DRC_INVOKED
    -I ${PROJECT_SOURCE_DIR}/platform/include)
endif()

# add_resource_module(TARGET FILE.DLL SOURCE.rc [INCLUDED...]): the module is made as RESOURCE_MODULE_FILE, a property of the
# target. INCLUDED are the files that the script includes, seen from its folder; what they name in turn lies beside them.
function(add_resource_module target file source)
  get_filename_component(source "${source}" ABSOLUTE)
  get_filename_component(folder "${source}" DIRECTORY)
  set(included)
  set(include_folders -I "${folder}")
  foreach(file_included ${ARGN})
    get_filename_component(file_included "${file_included}" ABSOLUTE BASE_DIR "${folder}")
    list(APPEND included "${file_included}")
    get_filename_component(file_included "${file_included}" DIRECTORY)
    list(APPEND include_folders -I "${file_included}")
  endforeach()
  set(res "${CMAKE_CURRENT_BINARY_DIR}/${target}.res")
  set(module "${CMAKE_CURRENT_BINARY_DIR}/${file}")
  add_custom_command(
    OUTPUT "${res}"
    COMMAND "${VELMORA_WINDRES}" ${VELMORA_RC_PREPROCESSOR} --codepage=65001 ${include_folders} -O res -i "${source}" -o "${res}"
    DEPENDS "${source}" ${included}
    VERBATIM)
  if(WIN32)
    set(object "${CMAKE_CURRENT_BINARY_DIR}/${target}.obj")
    add_custom_command(
      OUTPUT "${module}"
      COMMAND "${VELMORA_WINDRES}" -I "${folder}" -O coff -i "${res}" -o "${object}"
      COMMAND "${CMAKE_CXX_COMPILER}" -nostdlib -shared -s -Wl,--entry,0 -Wl,--no-insert-timestamp -o "${module}" "${object}"
      DEPENDS "${res}"
      VERBATIM)
  else()
    add_custom_command(OUTPUT "${module}" COMMAND "${CMAKE_COMMAND}" -E copy "${res}" "${module}" DEPENDS "${res}" VERBATIM)
  endif()
  add_custom_target(${target} ALL DEPENDS "${module}")
  set_target_properties(${target} PROPERTIES RESOURCE_MODULE_FILE "${module}")
endfunction()
