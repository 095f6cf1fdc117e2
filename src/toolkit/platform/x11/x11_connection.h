// One display connection of ours: opened per editor window (and per question
// box), with our error handlers, and counted so that tests can see leaks.
#pragma once

#include <X11/Xlib.h>

#include <atomic>

namespace VSTGUI::x11 {

// Opens the display named by DISPLAY; null if there is none. Installs our
// error handler while any connection of ours is open: errors on our
// connections are counted, others go to the handler that was there before.
// A connection that dies makes later calls on it return at once instead of
// ending the process.
Display* openConnection();
void closeConnection(Display* display);
// Errors counted on this connection since it was opened.
int errorCount(Display* display);
// True once the connection has failed for good.
bool connectionLost(Display* display);

extern std::atomic<int> openWindows;
extern std::atomic<int> openConnections;

}  // namespace VSTGUI::x11
