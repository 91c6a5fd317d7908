// SPDX-License-Identifier: MIT
#include "output/contact_sheet.h"

#include <string_view>

#include "terminal/terminal.h"

namespace cli {
namespace {

std::string Escaped(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '&') {
      escaped += "&amp;";
    } else if (c == '<') {
      escaped += "&lt;";
    } else if (c == '"') {
      escaped += "&quot;";
    } else {
      escaped += c;
    }
  }
  return escaped;
}

/// A path as the address of a link: whatever has a meaning there is written as its number.
std::string Address(const platform::fs::path& path) {
  constexpr std::string_view kSpecial = "%#?\"<>\\ :";
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string address;
  for (const char c : path.generic_string()) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte > ' ' && byte < 0x7f && kSpecial.find(c) == kSpecial.npos) {
      address += c;
    } else {
      address.append(1, '%').append(1, kDigits[byte >> 4]).append(1, kDigits[byte & 15]);
    }
  }
  return address;
}

}  // namespace

std::string ContactSheet(const std::vector<SheetEntry>& entries) {
  std::string page =
      "<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\"><title>Contact sheet</title>\n<style>\n"
      "body { font: 14px sans-serif; background: #eee; margin: 16px;\n"
      "  display: grid; grid-template-columns: repeat(auto-fill, minmax(220px, 1fr)); gap: 12px }\n"
      "figure { margin: 0; background: white; padding: 8px; border-radius: 4px }\n"
      "img { width: 100%; aspect-ratio: 1; object-fit: contain }\n"
      "figcaption { overflow-wrap: anywhere }\n</style></head><body>\n";
  for (const SheetEntry& entry : entries) {
    const std::string address = Address(entry.picture);
    page += "<figure><a href=\"" + address + "\"><img loading=\"lazy\" src=\"" + address +
            "\" alt=\"\"></a><figcaption>" + Escaped(Printable(entry.title)) + "</figcaption></figure>\n";
  }
  return page + "</body></html>\n";
}

}  // namespace cli
