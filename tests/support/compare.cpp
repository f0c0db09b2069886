#include "tests/support/compare.h"

#include "blocks/byte_kernels.h"

namespace quill::test {

std::string show(const Outcome& o) {
  Longs asked;
  for (const auto& [reference, progress] : o.asked) {
    asked.insert(asked.end(), {reference, progress});
  }
  return show_fields("result", o.result, "outs", o.outs, "list", o.list,
                     "longs", longs_in(o.list.bytes), "text", o.text, "buffer",
                     o.buffer, "asked", asked, "outs then", o.outs_when_asked);
}

Outcome observe(const Run& run, Side side, const HostPlan& plan) {
  const YieldRecorder host(plan);
  Outcome outcome = run(side, host.callback());
  outcome.asked = host.calls();
  outcome.outs_when_asked = host.seen_outs();
  return outcome;
}

std::string first_difference(const Run& run, HostPlan plan) {
  if (plan.stop_at != kNever) {
    HostPlan patient = plan;
    patient.stop_at = kNever;
    const auto asked = observe(run, Side::kNaive, patient).asked.size();
    plan.stop_at = asked == 0 ? kNever : plan.stop_at % static_cast<int>(asked);
  }
  const Outcome wanted = observe(run, Side::kNaive, plan);
  std::string difference;
  for (const ByteKernels* kernels : available_kernels()) {
    force_kernels(kernels);
    const Outcome seen = observe(run, Side::kLibrary, plan);
    if (seen == wanted) continue;
    difference = show_fields("\nlibrary", show(seen).c_str(), "\nnaive",
                             show(wanted).c_str(), "\nkernels", kernels->name,
                             "YieldMax", plan.yield_max, "stop", plan.stop_at,
                             "answer", plan.answer, "change", plan.change_at,
                             "to", plan.change_to, "\ncall", "");
    break;
  }
  force_kernels(nullptr);
  return difference;
}

}  // namespace quill::test
