#pragma once

#include <memory>

/// The mark of the one instance of the program on this machine. The system takes it back when the process
/// ends, in whatever way, so a crash never keeps a till from starting.
class InstanceLock {
  public:
    /// nullptr when another process has it. It lies in the folder that MERIVANE_RUNTIME names, else in the
    /// machine's folder for locks. A machine that allows no lock at all is taken for one without another
    /// instance.
    static std::unique_ptr<InstanceLock> acquire();
    ~InstanceLock();
    InstanceLock(const InstanceLock&) = delete;
    InstanceLock& operator=(const InstanceLock&) = delete;

  private:
    struct Impl;
    explicit InstanceLock(std::unique_ptr<Impl> impl);
    std::unique_ptr<Impl> m_impl;
};
