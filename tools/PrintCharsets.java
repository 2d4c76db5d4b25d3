// Answers what the JDK maps in its charsets, for peers.py: a line of standard input is a question,
// and the answer ends with a line "end".
//
//     list                               "charset NAME ALIAS..." for each charset
//     CHARSET PATTERN... [shifts]        "read CODE VALUE+VALUE" and "write TEXT VALUE+VALUE"
//     CHARSET text =BYTES|VALUE+VALUE...  the same for whole texts, of bytes and of values
//
// A pattern has the bytes that a code may have at each place: 8E,A1-B0,A1-FE,A1-FE. With shifts,
// codes of two bytes stand between SO and SI.

import java.io.BufferedReader;
import java.io.InputStreamReader;
import java.nio.ByteBuffer;
import java.nio.CharBuffer;
import java.nio.charset.CharacterCodingException;
import java.nio.charset.Charset;
import java.nio.charset.CharsetDecoder;
import java.nio.charset.CharsetEncoder;
import java.util.ArrayList;
import java.util.HashSet;
import java.util.HexFormat;
import java.util.List;
import java.util.Set;
import java.util.stream.Collectors;

public class PrintCharsets {
  static final HexFormat HEX = HexFormat.of().withUpperCase();

  final CharsetDecoder decoder;
  final CharsetEncoder encoder;
  final StringBuilder out;
  final Set<Integer> singles = new HashSet<>();
  final Set<String> sequences = new HashSet<>();
  boolean shifts;

  PrintCharsets(String name, StringBuilder out) {
    Charset charset = Charset.forName(name);
    decoder = charset.newDecoder();
    encoder = charset.canEncode() ? charset.newEncoder() : null;
    this.out = out;
  }

  String read(byte[] text) {
    try {
      return decoder.decode(ByteBuffer.wrap(text)).toString();
    } catch (CharacterCodingException e) {
      return null;
    }
  }

  static String values(String text) {
    return text.codePoints().mapToObj(c -> String.format("%04X", c))
        .collect(Collectors.joining("+"));
  }

  void printRead(byte[] code, String read) {
    out.append("read ").append(HEX.formatHex(code)).append(' ').append(values(read)).append('\n');
  }

  void readCodes(List<int[]> places, byte[] code, int length) {
    if (length < places.size()) {
      if (length == 1 && !shifts && singles.contains(code[0] & 0xFF)) return;
      for (int b = places.get(length)[0]; b <= places.get(length)[1]; b++) {
        code[length] = (byte) b;
        readCodes(places, code, length + 1);
      }
      return;
    }
    if (shifts && length == 1 && (code[0] == 0x0E || code[0] == 0x0F)) return;
    byte[] text = shifts && length == 2 ? new byte[] {0x0E, code[0], code[1], 0x0F} : code.clone();
    String read = read(text);
    if (read == null || read.isEmpty()) return;
    if (length == 1) singles.add(code[0] & 0xFF);
    if (read.codePointCount(0, read.length()) > 1) sequences.add(read);
    printRead(code, read);
  }

  void write(String value) {
    try {
      ByteBuffer text = encoder.encode(CharBuffer.wrap(value));
      byte[] bytes = new byte[text.remaining()];
      text.get(bytes);
      if (bytes.length == 0) return;
      out.append("write ").append(HEX.formatHex(bytes)).append(' ').append(values(value));
      out.append('\n');
    } catch (CharacterCodingException e) {
      // It has none.
    }
  }

  void printAll(String[] words) {
    int count = words.length;
    shifts = words[count - 1].equals("shifts");
    for (int i = 1; i < (shifts ? count - 1 : count); i++) {
      List<int[]> places = new ArrayList<>();
      for (String place : words[i].split(",")) {
        String[] range = place.split("-");
        int first = Integer.parseInt(range[0], 16);
        places.add(new int[] {first, Integer.parseInt(range[range.length - 1], 16)});
      }
      readCodes(places, new byte[places.size()], 0);
    }
    if (encoder == null) return;
    for (int c = 0; c < 0x110000; c++) {
      if (c < 0xD800 || c > 0xDFFF) write(Character.toString(c));
    }
    sequences.forEach(this::write);
  }

  void printTexts(String[] words) {
    for (int i = 2; i < words.length; i++) {
      if (words[i].startsWith("=")) {
        byte[] text = HEX.parseHex(words[i].substring(1));
        String read = read(text);
        if (read != null && !read.isEmpty()) printRead(text, read);
      } else if (encoder != null) {
        StringBuilder text = new StringBuilder();
        for (String value : words[i].split("\\+")) text.appendCodePoint(Integer.parseInt(value, 16));
        write(text.toString());
      }
    }
  }

  static void printNames(StringBuilder out) {
    for (Charset charset : Charset.availableCharsets().values()) {
      out.append("charset ").append(charset.name());
      for (String alias : charset.aliases()) out.append(' ').append(alias);
      out.append('\n');
    }
  }

  public static void main(String[] arguments) throws Exception {
    BufferedReader questions = new BufferedReader(new InputStreamReader(System.in));
    for (String question = questions.readLine(); question != null; question = questions.readLine()) {
      StringBuilder out = new StringBuilder();
      String[] words = question.split(" ");
      if (words[0].equals("list")) {
        printNames(out);
      } else if (words[1].equals("text")) {
        new PrintCharsets(words[0], out).printTexts(words);
      } else {
        new PrintCharsets(words[0], out).printAll(words);
      }
      System.out.print(out);
      System.out.println("end");
      System.out.flush();
    }
  }
}
