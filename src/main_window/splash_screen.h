// The picture that shows while the program starts.
#pragma once

#include <QWidget>

namespace quorrix {

class SplashScreen final : public QWidget {
  Q_OBJECT

 public:
  SplashScreen();
};

}  // namespace quorrix
