// An interface installed for a while: the window program, gandrel-cli, the
// calculator and the tests swap the engine's interfaces (the user interface,
// the script windows, the script files, the shell's view) for the length of
// a block, and every way out of the block puts back the one that was there.
#pragma once

namespace gandrel {

// Installs now (nullptr: the silent stand-in) with Install, and on
// destruction installs again what Current gave before.
template <class Interface, Interface& (*Current)(), void (*Install)(Interface*)>
class Installed {
 public:
  explicit Installed(Interface* now) : outer_(&Current()) { Install(now); }
  ~Installed() { Install(outer_); }
  Installed(const Installed&) = delete;
  Installed& operator=(const Installed&) = delete;

  // The interface that was in force before.
  Interface& Outer() const { return *outer_; }

 private:
  Interface* outer_;
};

}  // namespace gandrel
