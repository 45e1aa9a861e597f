// Date parsing, ours beside the peers on the same texts:
//
//   BM_ParseRfc1123_*   the 8 texts in the exact RFC 1123 layout, which every
//                       reader here reads: the "one RFC 1123 date" figure
//   BM_ParseRfc822_*    parseRFC822Date's 16 mixed mail and HTTP texts
//   BM_ParseAtom_*      AtomDateToSysTime's 16 RFC 3339 texts
//
// A peer that misreads some texts is timed on the rest (its label says which
// it left out), and a BM_..._Ours_On<Peer>Texts row times ours on exactly
// those, so each ratio compares the same inputs. Compare `per_text`.
#include <iostream>  // stream objects exist before the registrations below run

#include "bench/BenchTexts.h"
#include "bench/BenchTiming.h"
#include "bench/FloorReaders.h"
#include "bench/LibcReaders.h"
#include "bench/LibraryReaders.h"
#include "bench/OursReaders.h"

namespace zpbench {
namespace {

// A peer's row, then ours on the peer's texts when it misreads some.
template <class Ours, class Peer>
void registerPeer(const std::string& prefix, const std::string& peer, const TextSet& set) {
  registerReader<Peer>(prefix + peer, set);
  registerOursOnPeerTexts<Ours, Peer>(prefix + "Ours_On" + peer + "Texts", set);
}

template <class Ours, class Floor>
void registerSet(const std::string& prefix, const TextSet& set, bool atom) {
  registerReader<Ours>(prefix + "Ours", set);
  registerPeer<Ours, Floor>(prefix, "Floor", set);
  if (atom) {
    registerPeer<Ours, StrptimeAtomReader>(prefix, "Strptime", set);
  } else {
    registerPeer<Ours, StrptimeMailReader>(prefix, "Strptime", set);
  }
#if ZP_BENCH_ABSL
  if (atom) {
    registerPeer<Ours, AbslAtomReader>(prefix, "Absl", set);
  } else {
    registerPeer<Ours, AbslMailReader>(prefix, "Absl", set);
  }
#endif
#if ZP_BENCH_CURL
  registerPeer<Ours, CurlReader>(prefix, "Curl", set);
#endif
#if ZP_BENCH_BOOST
  if (atom) {
    registerPeer<Ours, BoostAtomReader>(prefix, "Boost", set);
  } else {
    registerPeer<Ours, BoostMailReader>(prefix, "Boost", set);
  }
#endif
#if ZP_BENCH_HHDATE
  if (atom) {
    registerPeer<Ours, HhDateAtomReader>(prefix, "HhDate", set);
  } else {
    registerPeer<Ours, HhDateMailReader>(prefix, "HhDate", set);
  }
#endif
}

// The registrations need the peers' readers built, to know which texts each
// reads right; all the libraries involved allow that during static
// initialisation.
const bool kRegistered = [] {
  registerSet<OursRfc822Reader, FloorRfc1123Reader>("BM_ParseRfc1123_", kRfc1123Texts, false);
  registerSet<OursRfc822Reader, FloorRfc1123Reader>("BM_ParseRfc822_", kMailTexts, false);
  registerSet<OursAtomReader, FloorAtomReader>("BM_ParseAtom_", kAtomTexts, true);
  return true;
}();

}  // namespace
}  // namespace zpbench
