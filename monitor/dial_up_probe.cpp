#include "monitor/dial_up_probe.h"

#include "platform/ras_service.h"
#include "storage/fixed_text.h"

DialUpProbe::DialUpProbe()
    : connections_(), connectionCount_(0), bufferSize_(0), queriedHandle_(nullptr), status_() {}

DialUpProbe::~DialUpProbe() = default;

bool DialUpProbe::IsConnected() {
  RasService& service = CurrentRas();
  connections_[0].dwSize = sizeof(ras::Connection95);
  bufferSize_ = sizeof connections_;
  if (service.EnumConnections(connections_, &bufferSize_, &connectionCount_) != 0) return false;

  // With nothing listed, entry 0 still holds the handle of the connection seen last,
  // so its state (gone, or listed as disconnected) is what the query reports.
  queriedHandle_ = connections_[0].hrasconn;
  status_.dwSize = sizeof(ras::ConnectionStatus95);
  if (service.GetConnectStatus(queriedHandle_, &status_) != 0) return false;

  if (status_.rasconnstate == ras::kStateConnected) {
    // Entry names may be 256 characters long; the shared name keeps the first 49.
    CopyFixedText(connectionName_, connections_[0].szEntryName);
    onLine_ = true;
    noConnectionSeen_ = false;
    return true;
  }
  if (status_.rasconnstate == ras::kStateDisconnected) onLine_ = false;
  return false;
}
