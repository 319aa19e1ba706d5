#pragma once

#include <Foundation/NSObject.h>

#include <type_traits>

/// The name of a method that an object chosen at run time performs: a control's action, a timer's method.
/// Made by `selector`; null means no method.
///
/// Calls the method on `receiver` with `argument`, and returns true. Returns false and calls nothing when the
/// receiver is null or of a class without the method, or when the method takes another class of argument. A
/// null argument fits every method. Within a program or library, selectors of the same method are equal.
using SEL = bool (*)(NSObject* receiver, NSObject* argument);

namespace KorvidSelector {

template <class Method> struct Traits;
template <class Receiver> struct Traits<void (Receiver::*)()> {
    static void call(Receiver& receiver, void (Receiver::*method)(), NSObject*) { (receiver.*method)(); }
    using Class = Receiver;
    using Argument = NSObject;
};
template <class Receiver, class Sender> struct Traits<void (Receiver::*)(Sender*)> {
    static void call(Receiver& receiver, void (Receiver::*method)(Sender*), Sender* argument)
    {
        (receiver.*method)(argument);
    }
    using Class = Receiver;
    using Argument = Sender;
};

// The type is a parameter of its own: by the value alone, g++ 12 takes methods of classes of the same name,
// each in the unnamed namespace of its file, for one.
template <class Method, Method kMethod> bool perform(NSObject* receiver, NSObject* argument)
{
    using MethodTraits = Traits<Method>;
    using Argument = typename MethodTraits::Argument;
    auto* const object = dynamic_cast<typename MethodTraits::Class*>(receiver);
    auto* const typedArgument = dynamic_cast<Argument*>(argument);
    if (!object || (argument && !typedArgument))
        return false;
    MethodTraits::call(*object, kMethod, typedArgument);
    return true;
}

} // namespace KorvidSelector

/// The selector of a member function that returns nothing and takes nothing or one pointer to an object:
///
///     class Controller : public NSObject {
///     public:
///         void toggled(ZRSwitchControl* sender);
///     };
///     control->setTarget(controller);
///     control->setAction(selector<&Controller::toggled>);
///
/// A virtual function's override is called. Of overloaded functions, a cast chooses one:
/// `selector<static_cast<void (View::*)(NSObject*)>(&View::print)>`.
template <auto kMethod> inline constexpr SEL selector = &KorvidSelector::perform<decltype(kMethod), kMethod>;
