// What keeps the module loaded: its objects, its event sinks and its locks.
#pragma once

namespace lifetime {

long references() noexcept;
void addReference() noexcept;
void removeReference() noexcept;

// Keeps the module loaded while it lives.
class ModuleReference {
 public:
  ModuleReference() noexcept { addReference(); }
  ~ModuleReference() { removeReference(); }
  ModuleReference(const ModuleReference&) = delete;
  ModuleReference& operator=(const ModuleReference&) = delete;
};

}  // namespace lifetime
