#include "federation_url.h"

#include "protocol.h"
#include "text.h"

namespace vcrti {

std::wstring FederationUrl::endpoint() const {
  std::wstring h = fromUtf8(host);
  if (h.find(L':') != std::wstring::npos) h = L"[" + h + L"]";
  return h + L":" + std::to_wstring(port);
}

bool parseFederationUrl(const std::wstring& text, FederationUrl& out, std::wstring& why) {
  out = FederationUrl{};
  const std::wstring threadScheme = L"thread://";
  const std::wstring hubScheme = L"rti://";
  if (text.compare(0, threadScheme.size(), threadScheme) == 0) {
    out.local = true;
    out.name = text.substr(threadScheme.size());
  } else if (text.compare(0, hubScheme.size(), hubScheme) == 0) {
    const std::wstring rest = text.substr(hubScheme.size());
    const auto slash = rest.find(L'/');
    if (slash == std::wstring::npos) {
      why = L"expected rti://host:port/Name";
      return false;
    }
    std::wstring authority = rest.substr(0, slash);
    out.name = rest.substr(slash + 1);
    std::wstring host = authority, port;
    if (!authority.empty() && authority[0] == L'[') {
      const auto close = authority.find(L']');
      if (close == std::wstring::npos) {
        why = L"unterminated [ in host";
        return false;
      }
      host = authority.substr(1, close - 1);
      if (close + 1 < authority.size()) {
        if (authority[close + 1] != L':') {
          why = L"expected ':' after ]";
          return false;
        }
        port = authority.substr(close + 2);
      }
    } else if (const auto colon = authority.rfind(L':'); colon != std::wstring::npos) {
      host = authority.substr(0, colon);
      port = authority.substr(colon + 1);
    }
    if (host.empty()) {
      why = L"no host";
      return false;
    }
    out.host = toUtf8(host);
    out.port = wire::kDefaultHubPort;
    if (!port.empty()) {
      unsigned long v = 0;
      for (wchar_t c : port) {
        if (c < L'0' || c > L'9' || v > 65535) {
          why = L"invalid port '" + port + L"'";
          return false;
        }
        v = v * 10 + static_cast<unsigned long>(c - L'0');
      }
      if (v == 0 || v > 65535) {
        why = L"invalid port '" + port + L"'";
        return false;
      }
      out.port = static_cast<std::uint16_t>(v);
    }
  } else if (text.find(L"://") != std::wstring::npos) {
    why = L"unknown scheme (use thread:// or rti://)";
    return false;
  } else {
    out.host = "127.0.0.1";
    out.port = wire::kDefaultHubPort;
    out.name = text;
  }
  if (out.name.empty()) {
    why = L"empty federation name";
    return false;
  }
  if (out.name.find(L'/') != std::wstring::npos) {
    why = L"federation name contains '/'";
    return false;
  }
  return true;
}

}  // namespace vcrti
