#include "activex/connection_point.h"

#include <new>

namespace korvel::activex {

ConnectionPoint::~ConnectionPoint() { UnadviseAll(); }

STDMETHODIMP ConnectionPoint::QueryInterface(REFIID riid, void** out) {
  if (!out) return E_POINTER;
  if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IConnectionPoint)) {
    *out = static_cast<IConnectionPoint*>(this);
    AddRef();
    return S_OK;
  }
  *out = nullptr;
  return E_NOINTERFACE;
}

STDMETHODIMP ConnectionPoint::GetConnectionInterface(IID* iid) {
  if (!iid) return E_POINTER;
  *iid = iid_;
  return S_OK;
}

STDMETHODIMP ConnectionPoint::GetConnectionPointContainer(IConnectionPointContainer** out) {
  if (!out) return E_POINTER;
  *out = owner_;
  owner_->AddRef();
  return S_OK;
}

STDMETHODIMP ConnectionPoint::Advise(IUnknown* sink, DWORD* cookie) {
  if (!sink || !cookie) return E_POINTER;
  *cookie = 0;
  IUnknown* typed = nullptr;
  if (FAILED(sink->QueryInterface(iid_, reinterpret_cast<void**>(&typed))) || !typed) {
    // An event sink may answer only IDispatch for the event dispinterface.
    if (IsEqualIID(iid_, IID_IPropertyNotifySink) ||
        FAILED(sink->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&typed))) || !typed)
      return CONNECT_E_CANNOTCONNECT;
  }
  *cookie = next_cookie_++;
  sinks_.emplace_back(*cookie, typed);
  return S_OK;
}

STDMETHODIMP ConnectionPoint::Unadvise(DWORD cookie) {
  for (auto it = sinks_.begin(); it != sinks_.end(); ++it) {
    if (it->first == cookie) {
      IUnknown* sink = it->second;
      sinks_.erase(it);
      sink->Release();
      return S_OK;
    }
  }
  return CONNECT_E_NOCONNECTION;
}

STDMETHODIMP ConnectionPoint::EnumConnections(IEnumConnections** out) {
  if (out) *out = nullptr;
  return E_NOTIMPL;
}

std::vector<IUnknown*> ConnectionPoint::Sinks() {
  std::vector<IUnknown*> out;
  for (auto& s : sinks_) {
    s.second->AddRef();
    out.push_back(s.second);
  }
  return out;
}

void ConnectionPoint::UnadviseAll() {
  auto sinks = std::move(sinks_);
  sinks_.clear();
  for (auto& s : sinks) s.second->Release();
}

namespace {

class PointEnum : public IEnumConnectionPoints {
 public:
  PointEnum(std::vector<IConnectionPoint*> points, size_t pos) : points_(std::move(points)), pos_(pos) {
    for (auto* p : points_) p->AddRef();
  }
  virtual ~PointEnum() {
    for (auto* p : points_) p->Release();
  }
  STDMETHODIMP QueryInterface(REFIID riid, void** out) override {
    if (!out) return E_POINTER;
    if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IEnumConnectionPoints)) {
      *out = static_cast<IEnumConnectionPoints*>(this);
      AddRef();
      return S_OK;
    }
    *out = nullptr;
    return E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&refs_)); }
  STDMETHODIMP_(ULONG) Release() override {
    LONG n = InterlockedDecrement(&refs_);
    if (n == 0) delete this;
    return static_cast<ULONG>(n);
  }
  STDMETHODIMP Next(ULONG count, IConnectionPoint** out, ULONG* fetched) override {
    if (!out) return E_POINTER;
    ULONG n = 0;
    while (n < count && pos_ < points_.size()) {
      out[n] = points_[pos_++];
      out[n]->AddRef();
      ++n;
    }
    if (fetched) *fetched = n;
    return n == count ? S_OK : S_FALSE;
  }
  STDMETHODIMP Skip(ULONG count) override {
    pos_ += count;
    if (pos_ > points_.size()) {
      pos_ = points_.size();
      return S_FALSE;
    }
    return S_OK;
  }
  STDMETHODIMP Reset() override {
    pos_ = 0;
    return S_OK;
  }
  STDMETHODIMP Clone(IEnumConnectionPoints** out) override {
    if (!out) return E_POINTER;
    *out = new (std::nothrow) PointEnum(points_, pos_);
    return *out ? S_OK : E_OUTOFMEMORY;
  }

 private:
  LONG refs_ = 1;
  std::vector<IConnectionPoint*> points_;
  size_t pos_;
};

}  // namespace

IEnumConnectionPoints* NewConnectionPointEnum(std::vector<IConnectionPoint*> points, size_t position) {
  return new (std::nothrow) PointEnum(std::move(points), position);
}

}  // namespace korvel::activex
