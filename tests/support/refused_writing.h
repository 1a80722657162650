// Reasons why a file cannot be written: a full disk, or missing permission.
#pragma once

namespace doccam::test {

// While alive, no file can grow beyond this size, which a writer sees as a full disk.
class FullDisk {
  public:
    explicit FullDisk(unsigned long bytes);
    ~FullDisk();
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

  private:
    unsigned long before_;
    void (*handlerBefore_)(int);
};

// While alive, a process run by root has the rights of an ordinary user.
class OrdinaryUser {
  public:
    static constexpr unsigned kUser = 65534;
    OrdinaryUser();
    ~OrdinaryUser();
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

  private:
    unsigned before_;
};

} // namespace doccam::test
