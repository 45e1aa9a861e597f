// loadAnyFormat on each of its seven forms, ours beside the peers that read
// the same texts:
//
//   BM_LoadJson_*, BM_LoadUnix_*   the counted forms: strtoll, from_chars and
//                                  a fair floor (FloorReaders.h)
//   BM_LoadAtom_*, BM_LoadUtcTime_*, BM_LoadGeneralized*_*
//                                  the date forms: strptime, abseil, date
//   BM_LoadRfc822_Ours             its RFC 822 form; the peers for it are the
//                                  BM_ParseRfc1123_* rows (ParseBench.cpp)
//   BM_LoadProse_Ours, BM_LoadGerman_Ours
//                                  what people's software writes, through the
//                                  same last form: against BM_ParseRfc1123_Ours
//
// Compare `per_text`.
#include <iostream>  // stream objects exist before the registrations below run

#include "bench/BenchTexts.h"
#include "bench/BenchTiming.h"
#include "bench/FloorReaders.h"
#include "bench/LibcReaders.h"
#include "bench/LibraryReaders.h"
#include "bench/OursReaders.h"

namespace zpbench {
namespace {

void registerLoaders() {
  registerReader<OursLoadReader<false>>("BM_LoadJson_Ours", kLoadJsonTexts);
  registerReader<JsonStrtollReader>("BM_LoadJson_Strtoll", kLoadJsonTexts);
  registerReader<JsonFloorReader>("BM_LoadJson_Floor", kLoadJsonTexts);

  registerReader<OursLoadReader<false>>("BM_LoadAtom_Ours", kLoadAtomTexts);
  registerReader<OursAtomReader>("BM_LoadAtom_OursAtomDateToSysTime", kLoadAtomTexts);
  registerReader<StrptimeAtomReader>("BM_LoadAtom_Strptime", kLoadAtomTexts);
#if ZP_BENCH_ABSL
  registerReader<AbslAtomReader>("BM_LoadAtom_Absl", kLoadAtomTexts);
#endif
#if ZP_BENCH_HHDATE
  registerReader<HhDateAtomReader>("BM_LoadAtom_HhDate", kLoadAtomTexts);
#endif

  registerReader<OursLoadReader<false>>("BM_LoadGeneralizedFraction_Ours",
                                        kLoadGeneralizedFractionTexts);
  registerReader<StrptimeReader<kStrptimeGeneralizedFractionFormats>>(
      "BM_LoadGeneralizedFraction_Strptime", kLoadGeneralizedFractionTexts);
#if ZP_BENCH_ABSL
  registerReader<AbslReader<kAbslGeneralizedFractionFormats>>("BM_LoadGeneralizedFraction_Absl",
                                                              kLoadGeneralizedFractionTexts);
#endif
#if ZP_BENCH_HHDATE
  registerReader<HhDateGeneralizedFractionReader>("BM_LoadGeneralizedFraction_HhDate",
                                                  kLoadGeneralizedFractionTexts);
#endif

  registerReader<OursLoadReader<false>>("BM_LoadUnix_Ours", kLoadUnixTexts);
  registerReader<UnixStrtollReader>("BM_LoadUnix_Strtoll", kLoadUnixTexts);
  registerReader<UnixFromCharsReader>("BM_LoadUnix_FromChars", kLoadUnixTexts);
  registerReader<UnixFloorReader>("BM_LoadUnix_Floor", kLoadUnixTexts);

  registerReader<OursLoadReader<false>>("BM_LoadUtcTime_Ours", kLoadUtcTimeTexts);
  registerReader<StrptimeReader<kStrptimeUtcTimeFormats>>("BM_LoadUtcTime_Strptime",
                                                          kLoadUtcTimeTexts);
#if ZP_BENCH_ABSL
  registerReader<AbslReader<kAbslUtcTimeFormats>>("BM_LoadUtcTime_Absl", kLoadUtcTimeTexts);
#endif
#if ZP_BENCH_HHDATE
  registerReader<HhDateUtcTimeReader>("BM_LoadUtcTime_HhDate", kLoadUtcTimeTexts);
#endif

  registerReader<OursLoadReader<false>>("BM_LoadGeneralized_Ours", kLoadGeneralizedTexts);
  registerReader<StrptimeReader<kStrptimeGeneralizedFormats>>("BM_LoadGeneralized_Strptime",
                                                              kLoadGeneralizedTexts);
#if ZP_BENCH_ABSL
  registerReader<AbslReader<kAbslGeneralizedFormats>>("BM_LoadGeneralized_Absl",
                                                      kLoadGeneralizedTexts);
#endif
#if ZP_BENCH_HHDATE
  registerReader<HhDateGeneralizedReader>("BM_LoadGeneralized_HhDate", kLoadGeneralizedTexts);
#endif

  registerReader<OursLoadReader<false>>("BM_LoadRfc822_Ours", kRfc1123Texts);
  registerReader<OursLoadReader<false>>("BM_LoadProse_Ours", kProseTexts);
  registerReader<OursLoadReader<false>>("BM_LoadGerman_Ours", kGermanTexts);
}

const bool kRegistered = [] {
  registerLoaders();
  return true;
}();

}  // namespace
}  // namespace zpbench
