// Nx_UseSmartp and Nx_Smartp: the framework's intrusive reference counting.
#pragma once

#include <utility>

class Nx_UseSmartp {
 public:
  void AddRef() const { ++refs_; }
  void Release() const {
    if (--refs_ == 0) delete this;
  }
  int RefCount() const { return refs_; }

 protected:
  Nx_UseSmartp() = default;
  Nx_UseSmartp(const Nx_UseSmartp&) : refs_(0) {}
  Nx_UseSmartp& operator=(const Nx_UseSmartp&) { return *this; }
  virtual ~Nx_UseSmartp() = default;

 private:
  mutable int refs_ = 0;
};

template <class T>
class Nx_Smartp {
 public:
  Nx_Smartp() = default;
  Nx_Smartp(T* p) : p_(p) { if (p_) p_->AddRef(); }
  Nx_Smartp(const Nx_Smartp& o) : p_(o.p_) { if (p_) p_->AddRef(); }
  Nx_Smartp(Nx_Smartp&& o) noexcept : p_(std::exchange(o.p_, nullptr)) {}
  Nx_Smartp& operator=(Nx_Smartp o) { std::swap(p_, o.p_); return *this; }
  ~Nx_Smartp() { if (p_) p_->Release(); }
  T* operator->() const { return p_; }
  T& operator*() const { return *p_; }
  T* get() const { return p_; }
  explicit operator bool() const { return p_ != nullptr; }

 private:
  T* p_ = nullptr;
};
