/// Pretended GConf settings for programs linked with the --wrap options of pb-util-fake-settings:
/// a client that records its calls, answers from a map and can be made to fail.
#pragma once

#include <map>
#include <string>
#include <variant>
#include <vector>

namespace fake {

struct Settings {
  using Value = std::variant<int, std::string, std::vector<int>>;

  /// Settings by key; an unset key reads as 0, NULL or an empty list.
  std::map<std::string, Value> values;
  /// "get_int(/key)", "set_string(/key, text)", "type_init", "default_client", in order.
  std::vector<std::string> calls;
  /// When not empty, every access fails with this message.
  std::string failure;
  /// Whether there is a client at all.
  bool has_client = true;
  /// Clients that were handed out and not dropped.
  int live_clients = 0;
};

/// The settings of this process, which runs one test.
Settings &settings();

}  // namespace fake
