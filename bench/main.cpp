#include "bench/support/bench.h"

int main(int argc, char** argv) {
  using namespace quill::bench;
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  add_block_cases();
  add_character_cases();
  add_mask_cases();
  add_byte_search_cases();
  add_string_search_cases();
  add_break_cases();
  add_pattern_cases();
  add_edit_cases();
  add_word_table_cases();
  add_selection_cases();
  add_growth_cases();
  add_peer_cases();
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
