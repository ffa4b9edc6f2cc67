// A second program for the tests of files and of opening addresses:
//
//   hold FILE             opens a data file as Quorrix does, makes FILE.held, and
//                         keeps it open until FILE.held is gone
//   write FILE TEXT...    writes how many texts it was given, and each on a line
#include <windows.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "platform/windows/windows_file_system.h"

namespace {

using Texts = std::vector<std::wstring>;

int hold(const Texts& texts) {
  quorrix::WindowsFileSystem files;
  const auto held = files.openRandomAccess(texts[1]);
  const std::filesystem::path sign = texts[1] + L".held";
  std::ofstream(sign).close();
  while (std::filesystem::exists(sign)) ::Sleep(5);
  return 0;
}

// Written under another name first, so that nobody reads half of it.
int write(const Texts& texts) {
  const std::filesystem::path part = texts[1] + L".part";
  {
    std::ofstream file(part, std::ios::binary);
    file << texts.size() - 2 << '\n';
    for (std::size_t i = 2; i < texts.size(); ++i) {
      file << std::filesystem::path(texts[i]).string() << '\n';
    }
  }
  std::filesystem::rename(part, texts[1]);
  return 0;
}

}  // namespace

int wmain(int count, wchar_t** texts) {
  const Texts given(texts + 1, texts + count);
  if (given.size() == 2 && given[0] == L"hold") return hold(given);
  if (given.size() >= 2 && given[0] == L"write") return write(given);
  return 2;
}
