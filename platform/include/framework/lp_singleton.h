// The framework's way to one shared instance of a service class.
#ifndef LUMENPRESS_FRAMEWORK_LP_SINGLETON_H
#define LUMENPRESS_FRAMEWORK_LP_SINGLETON_H

template <typename T>
class LPSingleton {
public:
  static T &getInstance() {
    static T instance;
    return instance;
  }
};

#endif
