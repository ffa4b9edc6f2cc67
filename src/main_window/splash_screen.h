// The picture that is shown while the program starts.
#pragma once

#include <QWidget>

namespace quorrix {

class SplashScreen final : public QWidget {
  Q_OBJECT

 public:
  SplashScreen();
};

}  // namespace quorrix
