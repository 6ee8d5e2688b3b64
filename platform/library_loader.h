// Loading the library's own module as a host would, for its entry points.
#pragma once

namespace brevo::platform {

// The named entry point of the module baseName (no extension) that lies beside
// the running program; null when the module or the entry is missing.
void* FindLibraryEntry(const char* baseName, const char* entry);

}  // namespace brevo::platform
