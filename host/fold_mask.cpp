#include "host/fold_mask.h"

#include <unicode/uchar.h>

#include "host/packed.h"
#include "quillcore.h"

namespace quill::tool {

namespace {

// Adds the folds among the code points [start, limit), all of one category.
UBool add_folds(const void* context, UChar32 start, UChar32 limit,
                UCharCategory category) {
  // Nothing folds in these categories, which hold nearly all code points.
  constexpr std::uint32_t kNeverFold =
      U_GC_CN_MASK | U_GC_CO_MASK | U_GC_CS_MASK;
  if ((U_MASK(category) & kNeverFold) != 0) return true;

  FoldMask& mask = **static_cast<FoldMask* const*>(context);
  for (UChar32 c = start; c < limit; ++c) {
    const UChar32 folded = u_foldCase(c, U_FOLD_CASE_DEFAULT);
    if (folded == c) continue;
    mask.keys.push_back(pack(c));
    mask.values.push_back(pack(folded));
  }
  return true;
}

}  // namespace

FoldMask fold_mask(bool ignore_case) {
  FoldMask mask;
  if (!ignore_case) return mask;
  FoldMask* const target = &mask;
  u_enumCharTypes(add_folds, &target);
  utf8_SortMask(mask.keys.data(), mask.values.data(), 0, mask.count());
  return mask;
}

}  // namespace quill::tool
