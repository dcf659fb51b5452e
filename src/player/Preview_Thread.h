#pragma once

#include <functional>

// The thread that drives GStreamer for the preview. It initialises GStreamer first, then builds,
// loads, seeks and stops the preview's pipelines, one call after another in the order they were
// queued, so that the GUI thread never waits for GStreamer: the registry scan, a plugin's
// loading or a flushing seek that waits for the decoder happen here.
namespace Preview_Thread {

// Starts the thread, and with it GStreamer's initialisation, unless already started. Called
// early at start-up, GStreamer is ready by the time the first file is opened.
void start();

// Queues the call on the thread, starting it if need be; it runs after every call queued before.
void run(std::function<void()> call);

} // namespace Preview_Thread
