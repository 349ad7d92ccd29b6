// What the screen would have shown, one JSON object a line: temporary lines, frames of drags, commands sent by
// programs, changes of the view. Each line is written at once.
#pragma once

#include <fstream>
#include <memory>
#include <string>

#include "host/ed/screen.h"

namespace cli {

class ScreenLog final : public ed::Screen {
 public:
  // Null when the file cannot be written, with the reason. While it lives it is the screen.
  static std::unique_ptr<ScreenLog> open(const std::string& path, std::string& reason);
  ~ScreenLog() override;
  ScreenLog(const ScreenLog&) = delete;
  ScreenLog& operator=(const ScreenLog&) = delete;

  // False once a line could not be written.
  [[nodiscard]] bool good() const { return m_file.good(); }

  void line(const GcGePoint3d& from, const GcGePoint3d& to, int color, bool highlight) override;
  [[nodiscard]] bool showsDrags() const override { return true; }
  void dragFrame(int status, const GcGeMatrix3d& matrix, const std::vector<GcDbObjectId>& entities,
                 int cursor) override;
  void command(const std::vector<ed::InputItem>& items) override;
  void viewChanged(const GcGePoint2d& center, double height) override;

 private:
  explicit ScreenLog(std::ofstream file);
  void write(const std::string& record);

  std::ofstream m_file;
  ed::Screen* m_former;
};

}  // namespace cli
