// MappingVisitor: is told of mappings.
#ifndef ENCODING_CODECS_MAPPING_VISITOR_H_
#define ENCODING_CODECS_MAPPING_VISITOR_H_

struct Mapping;

class MappingVisitor {
 public:
  virtual void visit(const Mapping& mapping) = 0;

 protected:
  ~MappingVisitor() = default;
};

#endif  // ENCODING_CODECS_MAPPING_VISITOR_H_
