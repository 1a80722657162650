// Ctrl-C and its relatives, as a descriptor to wait for instead of a handler.
#pragma once

namespace doccam::host {

// While one exists, SIGINT, SIGTERM and SIGHUP wait in a descriptor. Make it before the process has
// threads; threads begun later inherit the blocked signals.
class Interrupt {
  public:
    Interrupt();
    ~Interrupt();
    Interrupt(const Interrupt&) = delete;
    Interrupt& operator=(const Interrupt&) = delete;

    // Readable once the process has been asked to end.
    int descriptor() const { return descriptor_; }

    // Whether it has; stays true.
    bool raised() const;

    // Throws Interruption if it has.
    void check() const;

  private:
    int descriptor_;
};

} // namespace doccam::host
