// `orytool render SCENE.ory --frame N --size WxH [--depth 8|16|32] --output FILE.png`: a
// preview of one frame of a scene as the engine's renderer draws it.
#pragma once

#include <string>

namespace quillon::orytool {

struct RenderArguments {
  std::string scene;
  long long frame = 0;
  std::string size;  // "WIDTHxHEIGHT"
  int depth = 8;     // bits a channel of the render: 8, 16 or 32 (float)
  std::string output;
};

// Renders and writes the PNG; progress on standard error when it is a terminal, and a line
// for each picture the scene names that could not be read. Gives the exit code: 0 done, 1 the
// output could not be written or memory ran out, 2 bad input or usage, with the message in `error`.
int RunRender(const RenderArguments& arguments, std::string* error);

}  // namespace quillon::orytool
