# embed_text(TARGET SYMBOL FILE): puts a text file into a target. C++ sees it as
# extern "C" const char SYMBOL[], ended by a 0. The assembler copies the file, which
# takes no time however long it is; a change of the file is a change of the target.
function(embed_text target symbol file)
  set(source "${CMAKE_CURRENT_BINARY_DIR}/${symbol}.c")
  configure_file("${PROJECT_SOURCE_DIR}/cmake/embedded_text.c.in" "${source}" @ONLY)
  set_source_files_properties("${source}" TARGET_DIRECTORY ${target} PROPERTIES OBJECT_DEPENDS "${file}")
  target_sources(${target} PRIVATE "${source}")
endfunction()
