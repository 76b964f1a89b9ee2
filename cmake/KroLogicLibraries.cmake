# kro_logic_libraries(OUT): every logic library that exists in this build, highest layer first,
# for programs (the command line, fuzz targets, benchmarks) that may use any of them.
function(kro_logic_libraries out)
  set(libs "")
  foreach(lib kro_cli kro_cloud kro_documents kro_bridges kro_picker kro_formats kro_exchange kro_library kro_color kro_platform)
    if(TARGET ${lib})
      list(APPEND libs ${lib})
    endif()
  endforeach()
  set(${out} ${libs} PARENT_SCOPE)
endfunction()
