#include "platform/linux/mounted_volumes.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <string_view>

namespace quorrix {
namespace {

struct Mount {
  std::string point;
  std::string type;
  std::string source;
};

// Where removable media and the user's own mounts are.
constexpr std::string_view kUsersPlaces[] = {"/media", "/mnt", "/run/media"};

constexpr std::string_view kSystemsPlaces[] = {
    "/boot", "/dev", "/efi",      "/etc",     "/proc",           "/run",
    "/snap", "/sys", "/var/snap", "/var/run", "/var/lib/docker", "/var/lib/containers"};

// Shares and pools, whose source is not a device.
constexpr std::string_view kSharedTypes[] = {
    "9p",  "afs",  "ceph",   "cifs", "davfs", "drvfs",  "glusterfs", "ncpfs",
    "nfs", "nfs4", "prl_fs", "smb3", "smbfs", "vboxsf", "virtiofs",  "zfs"};

constexpr std::string_view kMemoryTypes[] = {"ramfs", "tmpfs"};

// User-space file systems, such as one over ssh, belong to the user, except for these.
constexpr std::string_view kUserSpacePrefix = "fuse.";
constexpr std::string_view kSystemsUserSpaceTypes[] = {"fuse.gvfsd-fuse", "fuse.lxcfs",
                                                       "fuse.portal", "fuse.snapfuse"};

template <typename List>
bool isIn(const List& list, std::string_view text) {
  return std::find(std::begin(list), std::end(list), text) != std::end(list);
}

bool isInOrBelow(std::string_view path, std::string_view folder) {
  return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

template <typename Places>
bool isInOneOf(const Places& places, std::string_view path) {
  return std::any_of(std::begin(places), std::end(places),
                     [path](std::string_view place) { return isInOrBelow(path, place); });
}

bool isOctal(char digit) { return digit >= '0' && digit <= '7'; }

// Blanks, tabs, line ends and backslashes are written as a backslash and three octal
// digits.
std::string unescaped(std::string_view text) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::string_view digits = text.substr(i + 1, 3);
    if (text[i] != '\\' || digits.size() < 3 ||
        !std::all_of(digits.begin(), digits.end(), isOctal)) {
      result += text[i];
      continue;
    }
    result += static_cast<char>((digits[0] - '0') * 64 + (digits[1] - '0') * 8 + (digits[2] - '0'));
    i += digits.size();
  }
  return result;
}

// "36 35 98:0 /root /point options [more]... - type source options"
std::optional<Mount> mountOf(const std::string& line) {
  std::istringstream fields(line);
  std::string field;
  Mount mount;
  constexpr int kFieldsBeforePoint = 4;
  for (int i = 0; i < kFieldsBeforePoint; ++i) fields >> field;
  fields >> mount.point;
  while (fields >> field && field != "-") {
  }
  fields >> mount.type >> mount.source;
  if (!fields) return std::nullopt;
  mount.point = unescaped(mount.point);
  return mount;
}

bool isVolume(const Mount& mount) {
  const bool isUsersPlace = isInOneOf(kUsersPlaces, mount.point);
  if (!isUsersPlace && isInOneOf(kSystemsPlaces, mount.point)) return false;
  if (isIn(kMemoryTypes, mount.type)) return isUsersPlace;
  if (isIn(kSharedTypes, mount.type)) return true;
  if (mount.type.starts_with(kUserSpacePrefix)) return !isIn(kSystemsUserSpaceTypes, mount.type);
  return mount.source.starts_with("/dev/");
}

}  // namespace

std::vector<Path> mountedVolumes(std::istream& mounts) {
  const std::string root = "/";
  std::set<std::string> points;
  for (std::string line; std::getline(mounts, line);) {
    const auto mount = mountOf(line);
    if (mount && mount->point != root && isVolume(*mount)) points.insert(mount->point);
  }
  std::vector<Path> volumes{root};
  volumes.insert(volumes.end(), points.begin(), points.end());
  return volumes;
}

}  // namespace quorrix
