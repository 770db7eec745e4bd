// A connection point of a control: the event dispinterface or
// IPropertyNotifySink. Sinks are kept in the order they were advised; events reach
// them in that order.
#pragma once
#include <utility>
#include <vector>

#include <windows.h>
#include <ocidl.h>
#include <olectl.h>

namespace korvel::activex {

class ConnectionPoint final : public IConnectionPoint {
 public:
  // owner: the container (its lifetime holds the point's).
  ConnectionPoint(IConnectionPointContainer* owner, REFIID iid) : owner_(owner), iid_(iid) {}
  ~ConnectionPoint();

  STDMETHODIMP QueryInterface(REFIID riid, void** out) override;
  STDMETHODIMP_(ULONG) AddRef() override { return owner_->AddRef(); }
  STDMETHODIMP_(ULONG) Release() override { return owner_->Release(); }
  STDMETHODIMP GetConnectionInterface(IID* iid) override;
  STDMETHODIMP GetConnectionPointContainer(IConnectionPointContainer** out) override;
  STDMETHODIMP Advise(IUnknown* sink, DWORD* cookie) override;
  STDMETHODIMP Unadvise(DWORD cookie) override;
  STDMETHODIMP EnumConnections(IEnumConnections** out) override;

  // The connected sinks (each QueryInterface'd for the point's interface), AddRef'ed
  // for the duration of a call; the caller releases them.
  std::vector<IUnknown*> Sinks();
  void UnadviseAll();

 private:
  IConnectionPointContainer* owner_;
  IID iid_;
  DWORD next_cookie_ = 1;
  std::vector<std::pair<DWORD, IUnknown*>> sinks_;
};

// An enumerator over a fixed list of connection points.
IEnumConnectionPoints* NewConnectionPointEnum(std::vector<IConnectionPoint*> points, size_t position = 0);

}  // namespace korvel::activex
