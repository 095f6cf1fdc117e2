// The assembler block that embeds a generated binary file in a library under
// a hidden symbol, in a read-only section of its own: what the build-time
// generators (waves, artwork) write into their generated sources.
#pragma once

#include <cstddef>
#include <filesystem>
#include <sstream>
#include <string>

namespace sablevox {

inline std::string incbinBlock(const std::string& symbol, const std::filesystem::path& binary,
                               size_t size, int alignment = 0) {
  std::ostringstream out;
  out << "__asm__(\".section .rodata." << symbol << ",\\\"a\\\",@progbits\\n\"\n";
  if (alignment > 0) out << "        \".balign " << alignment << "\\n\"\n";
  out << "        \".globl " << symbol << "\\n\"\n"
      << "        \".hidden " << symbol << "\\n\"\n"
      << "        \".type " << symbol << ", @object\\n\"\n"
      << "        \"" << symbol << ":\\n\"\n"
      << "        \".incbin \\\"" << binary.string() << "\\\"\\n\"\n"
      << "        \".size " << symbol << ", " << size << "\\n\"\n"
      << "        \".previous\\n\");\n\n";
  return out.str();
}

}  // namespace sablevox
