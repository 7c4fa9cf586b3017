// Callback buffers: type-erased callables with two arguments, and the member
// form that binds an object and one of its member functions.
#ifndef ZAVREL_PLATFORM_CALLBACK_H
#define ZAVREL_PLATFORM_CALLBACK_H

namespace Zavrel {

template <typename A1, typename A2>
class CallbackBuffer2 {
public:
    virtual ~CallbackBuffer2() = default;
    virtual void operator()(A1 a1, A2 a2) = 0;
};

template <typename T, typename A1, typename A2>
class MemberCallback2 : public CallbackBuffer2<A1, A2> {
public:
    using Method = void (T::*)(A1, A2);
    MemberCallback2(T* object, Method method) : m_object(object), m_method(method) {}
    void operator()(A1 a1, A2 a2) override { (m_object->*m_method)(a1, a2); }

private:
    T* m_object;
    Method m_method;
};

}  // namespace Zavrel

#endif
