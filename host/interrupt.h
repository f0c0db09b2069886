// Ctrl-C. A watching thread takes SIGINT, SIGTERM and SIGHUP; the yield
// callback looks at stop_requested() and makes the library stop by itself.
//
// Some stretches ask nobody: sorting, editing in place, a read that blocks. A
// run that has not come to its end shortly after the signal is ended by the
// watcher. Files are safe at any moment, since they are replaced only by the
// final renames, which the watcher waits for (see staging.h).
#pragma once

namespace quill::tool {

// Starts watching; once, before any other thread.
void watch_for_interrupts();

bool stop_requested();

// Throws Interrupted when a stop has been requested.
void throw_if_stopped();

}  // namespace quill::tool
