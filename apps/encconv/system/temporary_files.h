// Removal of temporary files when a signal ends the tool.
#ifndef APPS_ENCCONV_SYSTEM_TEMPORARY_FILES_H_
#define APPS_ENCCONV_SYSTEM_TEMPORARY_FILES_H_

namespace tool {

// Watches path, which must stay valid until forgetTemporary; returns its slot, or -1 when all slots
// are taken (the file is then left behind by a signal). Any thread may call.
int watchTemporary(const char* path);
void forgetTemporary(int slot);

// Installs the handlers for SIGHUP, SIGINT, SIGPIPE and SIGTERM, but for those that are ignored:
// they remove the watched files and end the process as the signal would have. Call once at start.
void removeTemporariesOnSignals();

}  // namespace tool

#endif  // APPS_ENCCONV_SYSTEM_TEMPORARY_FILES_H_
