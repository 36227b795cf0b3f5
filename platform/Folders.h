#pragma once

#include <sys/types.h>

#include <string>

// The program's own folders on this desktop, each found and, where missing, made with all its levels. They end in
// "Marrowfield Software/Quillon Enterprise Accounting with Manufacturing/2017.6". Paths are absolute, without a slash
// at the end. Where the desktop does not tell the folder above (a user without a home), the program's own folder takes
// its place. Error "Could not create folder ..." for a level that cannot be made.
namespace quillon::platform {

// Of this user alone: below $XDG_CONFIG_HOME, else ~/.config.
std::string settingsFolder();
// The usual place of companies: below the user's public share folder, else ~/Public.
std::string publicFolder();
// The store's private scratch files, in "Priv" below $TMPDIR/quillon-<user number>, which only this user may enter.
// Error too when that name belongs to somebody else.
std::string scratchFolder();

// Where the running program's file lies.
std::string programFolder();

// Makes the folder with all that is missing above it. Error "Could not create folder " and the level.
void makeFolder(const std::string& path, mode_t mode = 0777);

}  // namespace quillon::platform
