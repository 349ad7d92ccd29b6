// A drawing file read beside the open drawing; it goes when the handle goes.
#pragma once

#include <memory>

#include "module/app/host.h"

class SideDatabase {
 public:
  // Without contents until a file is read into it.
  SideDatabase() : m_database(new GcDbDatabase(false, true)) {}

  // Errors: those of readDwgFile.
  Gcad::ErrorStatus read(const GCHAR* path) {
    constexpr int kShareRead = 1;
    const Gcad::ErrorStatus status = m_database->readDwgFile(path, kShareRead, false, nullptr);
    m_isRead = status == Gcad::eOk;
    return status;
  }
  [[nodiscard]] bool isRead() const { return m_isRead; }
  [[nodiscard]] GcDbDatabase* get() const { return m_database.get(); }
  GcDbDatabase* operator->() const { return m_database.get(); }

 private:
  std::unique_ptr<GcDbDatabase> m_database;
  bool m_isRead = false;
};
