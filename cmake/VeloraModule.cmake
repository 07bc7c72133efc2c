# The module: the dialogs of the six subsystems. It sees only hostapi/ headers;
# a real host links its own implementation of Velora::HostApi instead of ours.
set(_velora_module_dirs cloud storage pricecheck smartpricing features materials)
set(_velora_module_sources "")
foreach(_d IN LISTS _velora_module_dirs)
  velora_glob_sources(_s "${CMAKE_SOURCE_DIR}/${_d}")
  list(APPEND _velora_module_sources ${_s})
endforeach()
add_library(velora_module ${_velora_module_sources})
add_library(Velora::Module ALIAS velora_module)
set_target_properties(velora_module PROPERTIES EXPORT_NAME Module OUTPUT_NAME velora)
target_include_directories(velora_module PUBLIC
  "$<BUILD_INTERFACE:${CMAKE_SOURCE_DIR}>"
  "$<INSTALL_INTERFACE:include/velora>")
target_link_libraries(velora_module PUBLIC velora_hostapi velora_resources)
velora_precompile(velora_module WIDGETS)
