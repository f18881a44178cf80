#pragma once

#include <cstdint>
#include <string>

#include "ports/CDWriterEvents.h"

namespace trackloom {

struct Session;
struct WritingForms;
class frmStatus;

/// What the events of the writer engine do to the status window, and how they move a recording on. One handler for each
/// event, on the UI thread.
class WriteProgress final : public CDWriterEvents {
 public:
  WriteProgress(Session& session, WritingForms& forms) : session_(session), forms_(forms) {}

  void OnWriteStarting() override;
  void OnTrackCacheStart(std::int16_t track, std::int32_t blocks) override;
  void OnCacheProgress(std::int32_t position) override;
  void OnTrackWriteStart(std::int16_t track, std::int32_t blocks) override;
  void OnWriteProgress(std::int16_t track, std::int32_t position, std::int16_t level) override;
  void OnReadBufferLevel(std::int16_t percent) override;
  void OnTrackClosing(std::int16_t track) override;
  void OnSessionClosing() override;
  void OnDiscClosing() override;
  void OnOperationComplete() override;
  void OnWriteError(std::int32_t code, std::int32_t deviceError) override;
  void OnEraseStarted() override;
  void OnEraseComplete() override;
  void OnAudioTrackListed(const HostPath& path, std::int32_t, std::int32_t, std::int32_t, std::int16_t number) override;

 private:
  frmStatus& status();
  void showClosing(const std::string& text);
  void prepareRealPass();
  void finishRecording();
  std::string errorMessage(std::int32_t code, std::int32_t deviceError);

  Session& session_;
  WritingForms& forms_;
};

}  // namespace trackloom
