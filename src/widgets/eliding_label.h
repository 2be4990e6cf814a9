#pragma once

#include "widgets/plain_text.h"

namespace tessa {

/// A label that gives up width before anything beside it does and then leaves out part of its text.
class ElidingLabel : public PlainLabel {
  Q_OBJECT

 public:
  ElidingLabel(Qt::TextElideMode mode, QWidget* parent);
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  Qt::TextElideMode mode_;
};

}  // namespace tessa
