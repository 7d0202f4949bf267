#pragma once
// The session's end: SIGTERM (and SIGHUP, SIGINT) end the event loop the ordinary way, so the
// program stops as it does from its own "Quit", with status 0.
class QCoreApplication;

namespace EndSignals {

void quitOn(QCoreApplication& app);

} // namespace EndSignals
