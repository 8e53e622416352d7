// The extension host: a process that lets another one call every operation over its standard input
// and output, in JSON-RPC 2.0, one message a line.
#pragma once

namespace kelspar {

// Serves requests until the end of standard input and all answers are written; returns the exit
// status: 0, or 1 when the answers can no longer be written. To be called on the main thread, once.
//
// From then on descriptor 1 is standard error, so that nothing but answers reaches the host.
int NSExtensionMain(int argc, const char* const* argv);

}  // namespace kelspar
