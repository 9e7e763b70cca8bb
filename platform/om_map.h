// OMMap: the run-time's ordered map. An absent key reads as a zeroed value,
// which the keyword tables rely on.
#pragma once

#include <map>

template <class Key, class Value>
class OMMap {
 public:
  void add(const Key& key, const Value& value) { map_[key] = value; }
  Value operator[](const Key& key) const {
    auto it = map_.find(key);
    return it == map_.end() ? Value{} : it->second;
  }
  bool lookUp(const Key& key, Value& value) const {
    auto it = map_.find(key);
    if (it == map_.end()) return false;
    value = it->second;
    return true;
  }
  int getCount() const { return static_cast<int>(map_.size()); }
  void removeAll() { map_.clear(); }

 private:
  std::map<Key, Value> map_;
};
