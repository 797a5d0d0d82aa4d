#pragma once
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

// Paths and whole files. Paths are UTF-8 text; "\" and "/" both separate when a path is taken apart, and the
// platform's own is written. Nothing here throws.
namespace qm {

// A path as the system's file calls take it, with "\" turned into "/". Bytes that are not UTF-8 pass
// unchanged.
std::filesystem::path NativePath(std::string_view path);

std::int64_t FileLength(std::string_view path);  // bytes; -1 when there is no such file
bool FileExists(std::string_view path);          // a file, not a folder
bool FolderExists(std::string_view path);
bool MakeFolder(std::string_view path);  // with its parents; true when it is there afterwards
bool DeleteFile(std::string_view path);  // true when it is not there afterwards

// Parts of "dir/name.ext": folder without a final separator ("" when there is none), "name.ext", "name", and
// "ext" as it is written, without the point. A name's leading point starts no extension.
std::string FolderOf(std::string_view path);
std::string FileNameOf(std::string_view path);
std::string BaseNameOf(std::string_view path);
std::string ExtensionOf(std::string_view path);
// Both parts with one separator between them.
std::string JoinPath(std::string_view folder, std::string_view name);

// On another computer: begins with two separators, or lies on a mounted network file system.
bool IsNetworkPath(std::string_view path);

// Type of the file system of a device ("8:1") in a table of mounts in the form of /proc/self/mountinfo; ""
// when it is not in there.
std::string MountedType(std::string_view mountTable, std::string_view device);

// A path of a file that does not exist yet, in the system's temporary folder, unique to this call.
std::string TemporaryFileName(std::string_view extension);
std::string TemporaryFolder();

// This user's folder for the program's own files, by the XDG rules: settings, or what it leaves behind as it
// runs. It need not exist; "" when the user has no home.
enum enUserFolder : std::int32_t { eufConfig = 1, eufState = 2 };
std::string UserFolder(enUserFolder folder);

// The whole file, or nothing read and false.
bool ReadWholeFile(std::string_view path, std::string& contents);

// Opens the file for append, making it when it is not there, writes and closes it. False when any of it
// failed.
bool AppendToFile(std::string_view path, std::string_view contents);

// Replaces a file's contents as one step: writes beside it, flushes to disk, renames. False leaves what was
// there. The new file keeps the old one's permissions.
bool WriteFileAtomically(std::string_view path, std::string_view contents);

}  // namespace qm
