#pragma once

namespace veltor {

// Waits `msec` milliseconds while the event loop runs, in slices of at most
// `sliceMs`, so that slots (a nested search among them) run meanwhile. Each
// slice sleeps in a local event loop until an event or its timer comes: an
// idle program waiting here uses no CPU.
void waitProcessingEvents(unsigned msec, int sliceMs);

} // namespace veltor
