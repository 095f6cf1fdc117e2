// sablevox-render: renders MIDI files to audio through a VST 2 instrument.
#include <unistd.h>

#include <exception>
#include <iostream>
#include <new>
#include <string>
#include <vector>

#include "render/options.h"
#include "render/plugin_session.h"
#include "render/render_session.h"

int main(int argc, char** argv) {
  using namespace sablevox::render;
  const std::vector<std::string> args(argv + 1, argv + argc);
  Options options;
  std::string error;
  if (!parseOptions(args, options, error)) {
    std::cerr << "sablevox-render: " << error << '\n';
    return kExitUsage;
  }
  // Whatever escapes is still a one-line message and a clean exit, after the
  // unwinding has removed any temporary file.
  try {
    return runCommand(options, std::cout, std::cerr, isatty(STDERR_FILENO) != 0);
  } catch (const std::bad_alloc&) {
    std::cerr << "sablevox-render: out of memory\n";
  } catch (const std::exception& failure) {
    std::cerr << "sablevox-render: " << failure.what() << '\n';
  }
  return kExitOutput;
}
