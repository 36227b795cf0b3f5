#pragma once

#include <string>

namespace quillon::store {

class FileSystem;

// A table's three files replaced as one, by others that stand whole and synced beside them under the same names with
// kNewSuffix. The new .DAT file decides: until it has its name the table is the old one, from then on the new one. A
// new .IDX or .BLB file that has not got its name yet is known by the file id that it shares with the .DAT file, and
// gets it from whoever comes next.
//
// Called under the commit lock, with the journal emptied, by whoever has the table open exclusively.
void replaceFiles(FileSystem& files, const std::string& folder, const std::string& name);

// Brings a replacement that was broken off to its end; false: there was none. Under the commit lock.
bool finishReplacing(FileSystem& files, const std::string& folder, const std::string& name);

// Copies one file, in place of `to`. Not synced.
void copyFile(FileSystem& files, const std::string& from, const std::string& to);

// `suffix`, or that with the first number behind it, from 2 on, under which there is no copy of the file yet.
std::string freeSuffix(FileSystem& files, const std::string& path, const std::string& suffix);

// Copies the table's files to the same names with `suffix` behind them, in place of an earlier copy. The copy is there
// when its .DAT file is, and then it is whole and safe. A file that is not there is not copied. The table must not
// change meanwhile.
void keepFiles(FileSystem& files, const std::string& folder, const std::string& name, const std::string& suffix);

}  // namespace quillon::store
