# What every target of ours is compiled with, and nobody else's.
function(quill_target_options target)
  set_target_properties(${target} PROPERTIES
    CXX_STANDARD 20 CXX_STANDARD_REQUIRED ON CXX_EXTENSIONS OFF
    C_STANDARD 11 C_STANDARD_REQUIRED ON C_EXTENSIONS OFF)
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion
    $<$<COMPILE_LANGUAGE:CXX>:-Wold-style-cast>
    -Wcast-qual
    # g++ 12 sees overlapping copies in any "literal" + std::string.
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
    $<$<BOOL:${QUILLCORE_WERROR}>:-Werror>)
endfunction()
