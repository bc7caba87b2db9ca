#include "lumo/Reflect.h"

#include <string>

namespace Lumo {

namespace {

struct OpName {
  OpCode code;
  const char* name;
};
constexpr OpName opNames[] = {
    {OpCode::read, "read"},
    {OpCode::write, "write"},
    {OpCode::del, "delete"},
    {OpCode::count, "count"},
    {OpCode::secondCount, "second count"},
    {OpCode::has, "membership"},
    {OpCode::call, "call"},
    {OpCode::isDefault, "operator!"},
    {OpCode::equal, "operator=="},
    {OpCode::less, "operator<"},
};

const char* opName(OpCode code) {
  for (const OpName& op : opNames) {
    if (op.code == code) return op.name;
  }
  return "this operation";
}

/// One operation under way.
struct Dispatch {
  const TypeRecord& type;
  void* object;
  bool constant;
  const AttributeOp& op;
  const GenericPtr& key;
  const GenericPtr& value;

  [[noreturn]] void refuse() const { throwOpNotSupportedException(type, op); }
  template <class Function>
  Function need(Function function) const {
    if (!function) refuse();
    return function;
  }
  template <class Function>
  Function needToChange(Function function) const {
    need(function);
    if (constant) throwConstantException(type.name);
    return function;
  }

  GenericPtr onAttribute(const AttributeRecord& row) const {
    switch (op.code) {
    case OpCode::read:
      if (key && row.readMember) return row.readMember(object, key);
      if (key) refuse();
      return need(row.read)(object);
    case OpCode::write:
      if (isCollection(row.kind)) {
        needToChange(row.writeMember)(object, key, value);
      } else {
        needToChange(row.write)(object, value);
      }
      return {};
    case OpCode::del:
      return needToChange(row.deleteMember)(object, key);
    case OpCode::count:
      return wrapAttrValue(static_cast<std::uint32_t>(need(row.members)(object)));
    case OpCode::secondCount:
      return wrapAttrValue(need(row.secondCount)(object));
    case OpCode::has:
      return wrapAttrValue(need(row.hasMember)(object, key));
    case OpCode::call:
      return (row.isConstant ? need(row.call)
                             : needToChange(row.call))(object, row.arguments.data(), op.arguments);
    default:
      refuse();
    }
  }

  GenericPtr onObject() const {
    switch (op.code) {
    case OpCode::isDefault:
      return wrapAttrValue(need(type.isDefault)(object));
    case OpCode::equal:
      return wrapAttrValue(type.isEntity() ? object == other() : need(type.equal)(object, other()));
    case OpCode::less:
      return wrapAttrValue(need(type.less)(object, other()));
    default:
      refuse();
    }
  }

  const void* other() const {
    if (!key) throwTypeException(type.name, "None");
    return key->voidPtrIs(type);
  }
};

} // namespace

void throwOpNotSupportedException(const TypeRecord& type, const AttributeOp& op) {
  std::string what = type.name;
  if (op.attribute) what += std::string("::") + op.attribute->name;
  throw InternalException(what + " does not support " + opName(op.code) + " (operation " +
                          std::to_string(static_cast<std::uint32_t>(op.code)) + ")");
}

GenericPtr attributeOp(const TypeRecord& type, void* object, bool constant, const AttributeOp& op,
                       const GenericPtr& key, const GenericPtr& value, bool& notHandled) {
  const Dispatch dispatch{type, object, constant, op, key, value};
  if (!op.attribute) return dispatch.onObject();
  if (!isSameType(*op.attribute->owner, type)) {
    notHandled = true;
    return {};
  }
  return dispatch.onAttribute(*op.attribute);
}

Ptr<GenericIterator> collectionIterator(void* object, bool constant,
                                        const AttributeRecord& attribute,
                                        IteratorFunctions& functions) {
  if (!attribute.iterator) return {};
  functions = *attribute.iteratorFunctions;
  return attribute.iterator(object, constant, nullptr);
}

Ptr<GenericIterator> collectionIteratorKey(void* object, bool constant,
                                           const AttributeRecord& attribute, const GenericPtr& key,
                                           IteratorFunctions& functions) {
  if (!attribute.iterator) return {};
  functions = *attribute.iteratorFunctions;
  return attribute.iterator(object, constant, &key);
}

namespace {

void* addressOf(GenericIf& object) {
  void* const address = object.voidPtrIs(object.type());
  if (!address) throw RangeException(std::string("a null ") + object.type().name);
  return address;
}

} // namespace

GenericPtr operate(GenericIf& object, const AttributeOp& op, const GenericPtr& key,
                   const GenericPtr& value) {
  void* const address = addressOf(object);
  for (const TypeRecord* type = &object.type(); type; type = type->base) {
    bool notHandled = false;
    auto result =
        type->genericIfAttributeOp(*type, address, object.constant(), op, key, value, notHandled);
    if (!notHandled) return result;
  }
  throwOpNotSupportedException(object.type(), op);
}

const AttributeRecord& attributeOf(const TypeRecord& type, std::string_view name) {
  if (const AttributeRecord* const row = type.attribute(name)) return *row;
  std::string names;
  for (const AttributeRecord& row : type.attributes) names += std::string(" ") + row.name;
  throw RangeException(std::string(type.name) + " has no attribute '" + std::string(name) +
                       "', but:" + names);
}

GenericPtr read(GenericIf& object, std::string_view attribute) {
  return operate(object, {&attributeOf(object.type(), attribute), OpCode::read});
}

void write(GenericIf& object, std::string_view attribute, const GenericPtr& value) {
  operate(object, {&attributeOf(object.type(), attribute), OpCode::write}, {}, value);
}

GenericPtr readMember(GenericIf& object, std::string_view attribute, const GenericPtr& key) {
  return operate(object, {&attributeOf(object.type(), attribute), OpCode::read}, key);
}

void writeMember(GenericIf& object, std::string_view attribute, const GenericPtr& key,
                 const GenericPtr& value) {
  operate(object, {&attributeOf(object.type(), attribute), OpCode::write}, key, value);
}

GenericPtr call(GenericIf& object, std::string_view method, ArgumentSpan arguments) {
  return operate(object, {&attributeOf(object.type(), method), OpCode::call, arguments});
}

GenericPtr construct(const TypeRecord& type, const GenericArguments& arguments) {
  if (!type.genericIfFromCtorArgs) {
    throw RangeException(std::string(type.name) + " is not built by name");
  }
  return type.genericIfFromCtorArgs(type, arguments, false);
}

GenericPtr fromStrep(const TypeRecord& type, const String& text) {
  return type.FromStrRep(type, text, false);
}

Walk::Walk(GenericPtr object, const AttributeRecord& attribute, const GenericPtr* key)
    : object_(std::move(object)) {
  const TypeRecord& type = object_->type();
  void* const address = addressOf(*object_);
  iterator_ =
      key ? type.genericIfIteratorKey(address, object_->constant(), attribute, *key, functions_)
          : type.genericIfIterator(address, object_->constant(), attribute, functions_);
  if (!iterator_) {
    throw RangeException(std::string(type.name) + "::" + attribute.name + " is no collection");
  }
}

} // namespace Lumo
