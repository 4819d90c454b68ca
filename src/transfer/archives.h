// The three archive calls that all rooms use.
#pragma once

#include <string>

// Extracts with folders kept, overwriting. Unless bQuiet the status window says what is extracted.
// False when the archive cannot be opened or its directory not be walked; single entries may still have failed.
bool UnzipFile(const std::string& zipPath, const std::string& folder, bool bQuiet);
// All files of the folder, names without paths. True when the zip exists at the end.
bool ZipFolder(const std::string& folder, const std::string& zipPath);
// Entries carry their lower-cased path relative to folder; with bSubfolders the folders below as well.
bool ZipFolderRelative(const std::string& folder, const std::string& zipPath, bool bSubfolders);
// Writes the carried 32-bit zlib into the system folder when it is missing.
void EnsureZlib();
